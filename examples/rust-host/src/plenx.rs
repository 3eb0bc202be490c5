//! The part of plenxsdk/plenx.h that a small host needs. The header says everything about each
//! function; the others are declared in the same way.
//!
//! Every function here may be called on any thread.

use std::ffi::{c_void, CStr};
use std::fmt;
use std::os::raw::c_char;
use std::time::Duration;

pub const PC: u32 = 1;
pub const EVENT_STATUS: u32 = 14;
pub const STATUS_START: i32 = 0;
pub const STATUS_STOP: i32 = 1;
const ABI: u32 = 1;
const KEY_NOT_RUNNING: u32 = 5;

mod raw {
    use super::*;

    #[repr(C)]
    pub struct Event {
        pub size: u32,
        pub kind: u32,
        pub service: u32,
        pub detail: i32,
        pub msg_len: u32,
        pub value: i32,
        pub lost: u64,
        pub text: *const u8,
        pub text_length: usize,
    }

    #[link(name = "plenxsdk_c")]
    extern "C" {
        pub fn plenx_open(header_abi: u32) -> i32;
        pub fn plenx_result_text(result: i32) -> *const c_char;
        pub fn plenx_init(
            install: *const u8, install_len: usize, data: *const u8, data_len: usize,
            third: *const u8, third_len: usize, flag: i32,
        ) -> i32;
        pub fn plenx_start(
            service: u32, group: *const u8, group_len: usize,
            argument: *const u8, argument_len: usize,
        ) -> i32;
        pub fn plenx_stop(service: u32, group: *const u8, group_len: usize) -> i32;
        pub fn plenx_get_int64(service: u32, key: u32, value: *mut i64) -> i32;
        pub fn plenx_queue_open(capacity: u32, queue: *mut *mut c_void) -> i32;
        pub fn plenx_queue_next(
            queue: *mut c_void, milliseconds: u32, event: *mut *const Event,
        ) -> i32;
        pub fn plenx_event_free(event: *const Event);
        pub fn plenx_queue_close(queue: *mut c_void) -> i32;
    }
}

/// A result other than 0.
#[derive(Debug, Clone, Copy, PartialEq, Eq)]
pub struct Error(pub i32);

impl fmt::Display for Error {
    fn fmt(&self, out: &mut fmt::Formatter) -> fmt::Result {
        // The sentence is a constant of the DLL's, for any number.
        let text = unsafe { CStr::from_ptr(raw::plenx_result_text(self.0)) };
        write!(out, "{} ({})", text.to_string_lossy(), self.0)
    }
}

impl std::error::Error for Error {}

pub type Result<T> = std::result::Result<T, Error>;

fn checked(result: i32) -> Result<()> {
    if result == 0 { Ok(()) } else { Err(Error(result)) }
}

/// Fails when the DLL is older than these declarations.
pub fn open() -> Result<()> {
    checked(unsafe { raw::plenx_open(ABI) })
}

pub fn init(install: &str, data: &str) -> Result<()> {
    checked(unsafe {
        raw::plenx_init(
            install.as_ptr(), install.len(), data.as_ptr(), data.len(), std::ptr::null(), 0, 0,
        )
    })
}

pub fn start(service: u32, group: &str, argument: &str) -> Result<()> {
    checked(unsafe {
        raw::plenx_start(service, group.as_ptr(), group.len(), argument.as_ptr(), argument.len())
    })
}

pub fn stop(service: u32, group: &str) -> Result<()> {
    checked(unsafe { raw::plenx_stop(service, group.as_ptr(), group.len()) })
}

pub fn is_running(service: u32) -> Result<bool> {
    let mut not_running = 0;
    checked(unsafe { raw::plenx_get_int64(service, KEY_NOT_RUNNING, &mut not_running) })?;
    Ok(not_running == 0)
}

/// A notification; `detail` is what the header calls type.
#[derive(Debug, Clone)]
pub struct Event {
    pub kind: u32,
    pub service: u32,
    pub detail: i32,
    pub value: i32,
    /// How many notifications were dropped directly before this one.
    pub lost: u64,
    /// Services may send any bytes; U+FFFD stands for those that are not UTF-8.
    pub text: String,
}

/// Takes every notification from the moment it is opened. Threads may share it.
pub struct Queue(*mut c_void);

unsafe impl Send for Queue {}
unsafe impl Sync for Queue {}

impl Queue {
    pub fn open(capacity: u32) -> Result<Queue> {
        let mut queue = std::ptr::null_mut();
        checked(unsafe { raw::plenx_queue_open(capacity, &mut queue) })?;
        Ok(Queue(queue))
    }

    /// Waits for the next event. None means that nothing came in time.
    pub fn next(&self, patience: Duration) -> Result<Option<Event>> {
        let milliseconds = patience.as_millis().min(u32::MAX as u128 - 1) as u32;
        let mut event = std::ptr::null();
        checked(unsafe { raw::plenx_queue_next(self.0, milliseconds, &mut event) })?;
        if event.is_null() {
            return Ok(None);
        }
        // The event and its text are ours until we free them; the text is never null.
        let copy = unsafe {
            let event = &*event;
            let text = std::slice::from_raw_parts(event.text, event.text_length);
            Event {
                kind: event.kind,
                service: event.service,
                detail: event.detail,
                value: event.value,
                lost: event.lost,
                text: String::from_utf8_lossy(text).into_owned(),
            }
        };
        unsafe { raw::plenx_event_free(event) };
        Ok(Some(copy))
    }
}

impl Drop for Queue {
    fn drop(&mut self) {
        unsafe { raw::plenx_queue_close(self.0) };
    }
}
