//go:build windows

// go-host is a small but complete host. It starts the PC service, waits for the outcome, stops the
// service again, and ends.
//
//	go-host INSTALL_FOLDER DATA_FOLDER
//
// It returns 0 when the service started and is gone again, 1 when not, and 2 when the command line
// is wrong.
package main

import (
	"errors"
	"fmt"
	"os"
	"time"

	"go-host/plenx"
)

const (
	group    = "home"
	patience = 60 * time.Second
)

var errNoOutcome = errors.New("no outcome has come in time")

// waitFor prints what comes until the outcome of our call has come.
func waitFor(queue *plenx.Queue, status int32) (bool, error) {
	for end := time.Now().Add(patience); ; {
		event, err := queue.Next(time.Until(end))
		if err != nil {
			return false, err
		}
		if event == nil {
			return false, errNoOutcome
		}
		fmt.Printf("event %d: service %d, type %d, value %d, %q\n",
			event.Kind, event.Service, event.Type, event.Value, event.Text)
		if event.Kind == plenx.EventStatus && event.Service == plenx.PC && event.Type == status &&
			event.Text == group {
			return event.Value != 0, nil
		}
	}
}

func run(install, data string) (bool, error) {
	sdk, err := plenx.Load()
	if err != nil {
		return false, err
	}
	queue, err := sdk.OpenQueue(1000) // before Init, which may already notify
	if err != nil {
		return false, err
	}
	defer queue.Close()

	// These calls return at once; the library does the work later, in this order.
	if err := sdk.Init(install, data); err != nil {
		return false, err
	}
	if err := sdk.Start(plenx.PC, group, "argument of the group"); err != nil {
		return false, err
	}

	// No error only meant that the library took the call. The event tells whether it worked.
	started, err := waitFor(queue, plenx.StatusStart)
	if err != nil {
		return false, err
	}
	fmt.Println("The start succeeded:", started)

	// The outcome of a stop is always false, so only its arrival counts.
	if err := sdk.Stop(plenx.PC, group); err != nil {
		return false, err
	}
	if _, err := waitFor(queue, plenx.StatusStop); err != nil {
		return false, err
	}
	running, err := sdk.IsRunning(plenx.PC)
	fmt.Println("The PC service is stopped:", !running)
	return started && !running, err
}

func main() {
	if len(os.Args) != 3 {
		fmt.Fprintln(os.Stderr, "usage: go-host INSTALL_FOLDER DATA_FOLDER")
		os.Exit(2)
	}
	done, err := run(os.Args[1], os.Args[2])
	if err != nil {
		fmt.Fprintln(os.Stderr, "go-host:", err)
	}
	if err != nil || !done {
		os.Exit(1)
	}
	// When the process ends, the library uninstalls its services.
}
