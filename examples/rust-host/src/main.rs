//! rust-host is a small but complete host. It starts the PC service, waits for the outcome, stops
//! the service again, and ends.
//!
//!     rust-host INSTALL_FOLDER DATA_FOLDER
//!
//! It returns 0 when the service started and is gone again, 1 when not, and 2 when the command line
//! is wrong.

mod plenx;

use plenx::{Event, Queue};
use std::process::ExitCode;
use std::time::{Duration, Instant};

const GROUP: &str = "home";
const PATIENCE: Duration = Duration::from_secs(60);

/// Prints what comes until the outcome of our call has come. None means that it has not come in
/// time.
fn wait_for(queue: &Queue, status: i32) -> plenx::Result<Option<bool>> {
    let end = Instant::now() + PATIENCE;
    loop {
        let left = end.saturating_duration_since(Instant::now());
        let event = match queue.next(left)? {
            Some(event) => event,
            None => return Ok(None),
        };
        print(&event);
        if event.kind == plenx::EVENT_STATUS
            && (event.service, event.detail) == (plenx::PC, status)
            && event.text == GROUP
        {
            return Ok(Some(event.value != 0));
        }
    }
}

fn print(event: &Event) {
    println!(
        "event {}: service {}, type {}, value {}, \"{}\"",
        event.kind, event.service, event.detail, event.value, event.text
    );
}

fn run(install: &str, data: &str) -> plenx::Result<bool> {
    plenx::open()?;
    let queue = Queue::open(1000)?; // before init, which may already notify

    // These calls return at once; the library does the work later, in this order.
    plenx::init(install, data)?;
    plenx::start(plenx::PC, GROUP, "argument of the group")?;

    // Ok only meant that the library took the call. The event tells whether it worked.
    let started = wait_for(&queue, plenx::STATUS_START)?;
    println!("The start: {started:?}");

    // The outcome of a stop is always false, so only its arrival counts.
    plenx::stop(plenx::PC, GROUP)?;
    let stopped = wait_for(&queue, plenx::STATUS_STOP)?;
    println!("The stop has {}.", if stopped.is_some() { "ended" } else { "had no outcome" });

    Ok(started == Some(true) && stopped.is_some() && !plenx::is_running(plenx::PC)?)
}

fn main() -> ExitCode {
    let arguments: Vec<String> = std::env::args().collect();
    if arguments.len() != 3 {
        eprintln!("usage: rust-host INSTALL_FOLDER DATA_FOLDER");
        return ExitCode::from(2);
    }
    match run(&arguments[1], &arguments[2]) {
        Ok(true) => ExitCode::SUCCESS, // when the process ends, the library uninstalls its services
        Ok(false) => ExitCode::FAILURE,
        Err(error) => {
            eprintln!("rust-host: {error}");
            ExitCode::FAILURE
        }
    }
}
