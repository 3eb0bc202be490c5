//go:build windows

// Package plenx has the part of plenxsdk/plenx.h that a small host needs. The header says everything
// about each function; the others are called in the same way. The package needs no cgo.
//
// Any goroutine may call any function. Notifications are pulled from a queue, because the library's
// threads must not call a Go function.
package plenx

import (
	"fmt"
	"os"
	"path/filepath"
	"syscall"
	"time"
	"unsafe"
)

const (
	PC          uint32 = 1
	EventStatus uint32 = 14
	StatusStart int32  = 0
	StatusStop  int32  = 1

	abi           = 1
	keyNotRunning = 5
	longestWait   = 0xfffffffe // milliseconds; one more would wait for ever

	loadLibrarySearchDLLLoadDir  = 0x100
	loadLibrarySearchDefaultDirs = 0x1000
)

// Error is a result other than 0.
type Error struct {
	Result int32
	Text   string
}

func (e *Error) Error() string { return fmt.Sprintf("%s (%d)", e.Text, e.Result) }

// SDK is the loaded DLL. It stays loaded until the process ends.
type SDK struct {
	dll syscall.Handle
}

// Load loads plenxsdk_c.dll from the folder of the program, and from nowhere else. Windows finds the
// DLLs that it needs beside it.
func Load() (*SDK, error) {
	program, err := os.Executable()
	if err != nil {
		return nil, err
	}
	path := filepath.Join(filepath.Dir(program), "plenxsdk_c.dll")
	wide, err := syscall.UTF16PtrFromString(path)
	if err != nil {
		return nil, err
	}
	load := syscall.NewLazyDLL("kernel32.dll").NewProc("LoadLibraryExW")
	dll, _, err := load.Call(uintptr(unsafe.Pointer(wide)), 0,
		loadLibrarySearchDLLLoadDir|loadLibrarySearchDefaultDirs)
	if dll == 0 {
		return nil, fmt.Errorf("%s, or a DLL that it needs: %w", path, err)
	}
	sdk := &SDK{syscall.Handle(dll)}
	return sdk, sdk.call("plenx_open", abi) // fails when the DLL is older than this package
}

func (sdk *SDK) address(name string) (uintptr, error) {
	return syscall.GetProcAddress(sdk.dll, name)
}

//go:uintptrescapes
func (sdk *SDK) call(name string, arguments ...uintptr) error {
	function, err := sdk.address(name)
	if err != nil {
		return fmt.Errorf("%s: %w", name, err)
	}
	result, _, _ := syscall.SyscallN(function, arguments...)
	if int32(result) == 0 {
		return nil
	}
	return &Error{int32(result), sdk.text(int32(result))}
}

func (sdk *SDK) text(result int32) string {
	function, err := sdk.address("plenx_result_text")
	if err != nil {
		return err.Error()
	}
	text, _, _ := syscall.SyscallN(function, uintptr(uint32(result)))
	return stringAt(text) // a constant of the DLL's
}

// Go neither moves nor collects the library's memory.
func bytesAt(address uintptr, length int) []byte {
	return unsafe.Slice(*(**byte)(unsafe.Pointer(&address)), length)
}

func stringAt(address uintptr) string {
	length := 0
	for bytesAt(address, length+1)[length] != 0 {
		length++
	}
	return string(bytesAt(address, length))
}

// bytes gives a text as the library takes it. The caller keeps the slice alive during the call.
func bytes(text string) ([]byte, uintptr) {
	return append([]byte(text), 0), uintptr(len(text))
}

func (sdk *SDK) Init(install, data string) error {
	i, iLength := bytes(install)
	d, dLength := bytes(data)
	return sdk.call("plenx_init", uintptr(unsafe.Pointer(&i[0])), iLength,
		uintptr(unsafe.Pointer(&d[0])), dLength, 0, 0, 0)
}

func (sdk *SDK) Start(service uint32, group, argument string) error {
	g, gLength := bytes(group)
	a, aLength := bytes(argument)
	return sdk.call("plenx_start", uintptr(service), uintptr(unsafe.Pointer(&g[0])), gLength,
		uintptr(unsafe.Pointer(&a[0])), aLength)
}

func (sdk *SDK) Stop(service uint32, group string) error {
	g, gLength := bytes(group)
	return sdk.call("plenx_stop", uintptr(service), uintptr(unsafe.Pointer(&g[0])), gLength)
}

func (sdk *SDK) IsRunning(service uint32) (bool, error) {
	var notRunning int64
	err := sdk.call("plenx_get_int64", uintptr(service), keyNotRunning,
		uintptr(unsafe.Pointer(&notRunning)))
	return notRunning == 0, err
}

// Event is a notification.
type Event struct {
	Kind, Service uint32
	Type, Value   int32
	Lost          uint64 // how many notifications were dropped directly before this one
	Text          string // services may send any bytes
}

// The struct of the header.
type rawEvent struct {
	size, kind, service uint32
	kindType            int32
	msgLen              uint32
	value               int32
	lost                uint64
	text, textLength    uintptr
}

// Queue takes every notification from the moment it is opened. Goroutines may share it.
type Queue struct {
	sdk    *SDK
	handle uintptr
}

func (sdk *SDK) OpenQueue(capacity uint32) (*Queue, error) {
	queue := &Queue{sdk: sdk}
	err := sdk.call("plenx_queue_open", uintptr(capacity), uintptr(unsafe.Pointer(&queue.handle)))
	return queue, err
}

// Next waits for the next event, on a thread of its own, so other goroutines go on. It returns nil
// when nothing came in time.
func (queue *Queue) Next(patience time.Duration) (*Event, error) {
	milliseconds := patience.Milliseconds()
	if milliseconds < 0 {
		milliseconds = 0
	} else if milliseconds > longestWait {
		milliseconds = longestWait
	}
	var raw *rawEvent
	err := queue.sdk.call("plenx_queue_next", queue.handle, uintptr(uint32(milliseconds)),
		uintptr(unsafe.Pointer(&raw)))
	if err != nil || raw == nil {
		return nil, err
	}
	event := &Event{raw.kind, raw.service, raw.kindType, raw.value, raw.lost,
		string(bytesAt(raw.text, int(raw.textLength)))}
	if free, err := queue.sdk.address("plenx_event_free"); err == nil {
		syscall.SyscallN(free, uintptr(unsafe.Pointer(raw)))
	}
	return event, nil
}

// Close wakes every goroutine that waits; they get an Error.
func (queue *Queue) Close() error {
	return queue.sdk.call("plenx_queue_close", queue.handle)
}
