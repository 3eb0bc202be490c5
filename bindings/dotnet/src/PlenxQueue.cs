using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.Runtime.InteropServices;
using System.Threading;
using System.Threading.Tasks;
using Microsoft.Win32.SafeHandles;

namespace PlenxSdk
{
    /// <summary>Holds events until a thread takes them. Any number of threads may wait.</summary>
    public sealed unsafe class PlenxQueue : IDisposable
    {
        // A long wait is many short ones, between which a thread notices that its token was cancelled.
        // Mono can also end its background threads only there; inside a wait they would keep the process
        // alive.
        private const int LongestWait = 250;

        private readonly QueueHandle handle = new QueueHandle();

        /// <summary>Opens a queue, which takes every event from now on.</summary>
        /// <param name="capacity">How many events it holds. When it is full, it drops the oldest, and
        /// <see cref="PlenxEvent.Lost"/> counts them.</param>
        public PlenxQueue(int capacity = 1000)
        {
            if (capacity <= 0)
            {
                throw new ArgumentOutOfRangeException(nameof(capacity));
            }
            Plenx.Open();
            handle.Open((uint)capacity);
        }

        /// <summary>Takes the oldest event, or waits for one on the calling thread.</summary>
        /// <param name="milliseconds">How long to wait: 0 does not wait, and
        /// <see cref="Timeout.Infinite"/> waits for ever.</param>
        /// <returns>The event, or null when none came in time.</returns>
        /// <exception cref="PlenxException">The queue was cancelled or closed.</exception>
        public PlenxEvent Next(int milliseconds = Timeout.Infinite)
        {
            if (milliseconds < Timeout.Infinite)
            {
                throw new ArgumentOutOfRangeException(nameof(milliseconds));
            }
            Stopwatch watch = Stopwatch.StartNew();
            while (true)
            {
                long left = milliseconds == Timeout.Infinite ? long.MaxValue
                    : Math.Max(0, milliseconds - watch.ElapsedMilliseconds);
                PlenxEvent next = Take(Math.Min(left, LongestWait));
                if (next != null || left <= LongestWait)
                {
                    return next;
                }
            }
        }

        /// <summary>Gives one event after another.</summary>
        /// <param name="milliseconds">How long to wait for each.</param>
        /// <returns>Events. They end when none came in time, or when the queue is cancelled or closed.
        /// </returns>
        public IEnumerable<PlenxEvent> Events(int milliseconds = Timeout.Infinite)
        {
            PlenxEvent next;
            while ((next = NextOrEnd(milliseconds)) != null)
            {
                yield return next;
            }
        }

        /// <summary>Takes the oldest event, or waits for one without blocking the calling thread.</summary>
        /// <remarks>
        /// If no event is there, one thread waits for this read: a background thread of its own, not
        /// one of the pool. It ends with the read. Code that awaits the task continues in the pool or in
        /// the context in which it awaits, never on that thread. A read that was cancelled has taken
        /// no event.
        /// </remarks>
        /// <param name="token">Ends the wait within 250 ms.</param>
        /// <returns>The event. The task fails with <see cref="PlenxException"/> when the queue is
        /// cancelled or closed.</returns>
        public Task<PlenxEvent> ReadAsync(CancellationToken token = default(CancellationToken))
        {
            if (token.IsCancellationRequested)
            {
                return Task.FromCanceled<PlenxEvent>(token);
            }
            try
            {
                PlenxEvent ready = Take(0);
                if (ready != null)
                {
                    return Task.FromResult(ready);
                }
            }
            catch (PlenxException e)
            {
                return Task.FromException<PlenxEvent>(e);
            }
            return Task.Factory.StartNew(() => WaitFor(token), token, TaskCreationOptions.LongRunning
                | TaskCreationOptions.DenyChildAttach
                | TaskCreationOptions.RunContinuationsAsynchronously, TaskScheduler.Default);
        }

        /// <summary>Sets the answer to a service that asks for the status of this link. The service
        /// waits for it, so it must be set beforehand.</summary>
        /// <param name="service">The service that asks.</param>
        /// <param name="group">The name of the group.</param>
        /// <param name="link">The number of the link.</param>
        /// <param name="status">The answer.</param>
        public void SetLinkStatus(PlenxService service, string group, uint link, int status)
        {
            byte[] name = Utf8.Bytes(group, nameof(group));
            fixed (byte* g = name)
            {
                Call.Check(Native.plenx_queue_set_link_status(handle.Value, (uint)service, g,
                    Utf8.Length(name), link, status));
            }
            GC.KeepAlive(this);
        }

        /// <summary>Makes an object for hosts that wait for several things at once. It is set while the
        /// queue holds something.</summary>
        /// <remarks>When it is set, call Next with 0 until it gives null. Never reset it. It can be
        /// used until the queue is disposed.</remarks>
        /// <returns>The object, or null when the system gives none.</returns>
        public WaitHandle MakeWaitHandle()
        {
            IntPtr system = Native.plenx_queue_wait_handle(handle.Value);
            GC.KeepAlive(this);
            if (system == IntPtr.Zero)
            {
                return null;
            }
            ManualResetEvent waitHandle = new ManualResetEvent(false);
            waitHandle.SafeWaitHandle.Dispose();
            waitHandle.SafeWaitHandle = new SafeWaitHandle(system, false);
            return waitHandle;
        }

        /// <summary>Ends all waiting for good, on every thread. The queue drops its events.</summary>
        public void Cancel()
        {
            Call.Check(Native.plenx_queue_cancel(handle.Value));
            GC.KeepAlive(this);
        }

        /// <summary>Closes the queue and ends all waiting. A second call does nothing.</summary>
        public void Dispose()
        {
            handle.Dispose();
        }

        private PlenxEvent Take(long milliseconds)
        {
            Native.Event* taken;
            Call.Check(Native.plenx_queue_next(handle.Value, (uint)milliseconds, &taken));
            GC.KeepAlive(this);
            if (taken == null)
            {
                return null;
            }
            try
            {
                return Copy(*taken);
            }
            finally
            {
                Native.plenx_event_free(taken);
            }
        }

        private PlenxEvent NextOrEnd(int milliseconds)
        {
            try
            {
                return Next(milliseconds);
            }
            catch (PlenxException e) when (e.Result == PlenxResult.Cancelled
                || e.Result == PlenxResult.Handle)
            {
                return null;
            }
        }

        private PlenxEvent WaitFor(CancellationToken token)
        {
            PlenxEvent next = null;
            while (next == null)
            {
                token.ThrowIfCancellationRequested();
                next = Take(LongestWait);
            }
            return next;
        }

        private static PlenxEvent Copy(Native.Event from)
        {
            byte[] bytes = new byte[checked((int)from.text_length)];
            Marshal.Copy((IntPtr)from.text, bytes, 0, bytes.Length);
            return new PlenxEvent((PlenxEventKind)from.kind, (PlenxService)from.service, from.type,
                from.msg_len, from.value, from.lost, bytes);
        }

        // Calls take the value without holding the handle, so that closing ends the waits of other
        // threads. The library never uses a value again, so a closed one is harmless.
        private sealed class QueueHandle : SafeHandle
        {
            internal QueueHandle() : base(IntPtr.Zero, true)
            {
            }

            public override bool IsInvalid
            {
                get { return handle == IntPtr.Zero; }
            }

            internal IntPtr Value
            {
                get { return handle; }
            }

            internal void Open(uint capacity)
            {
                IntPtr opened;
                Call.Check(Native.plenx_queue_open(capacity, &opened));
                SetHandle(opened);
            }

            protected override bool ReleaseHandle()
            {
                return Native.plenx_queue_close(handle) == 0;
            }
        }
    }
}
