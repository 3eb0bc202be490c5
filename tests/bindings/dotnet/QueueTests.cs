// A queue gives every event once, to whoever waits, and ends every wait when it is told to.

using System;
using System.Collections.Concurrent;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Threading;
using System.Threading.Tasks;
using PlenxSdk;

public sealed class QueueTests
{
    private const int Patience = 20000;

    public QueueTests()
    {
        Services.Start();
    }

    private static string Show(PlenxEvent shown)
    {
        return shown == null ? "nothing" : (uint)shown.Kind + " service " + (uint)shown.Service
            + " type " + shown.Type + " msg_len " + shown.MsgLen + " value " + shown.Value + " lost "
            + shown.Lost + ": " + shown.Text;
    }

    private static T InTime<T>(Task<T> task)
    {
        Check.True(((IAsyncResult)task).AsyncWaitHandle.WaitOne(Patience), "the task still waits");
        return task.GetAwaiter().GetResult();
    }

    [Test]
    public void EveryKindOfNotificationComesWithItsNumbers()
    {
        using (var queue = new PlenxQueue())
        {
            Services.Notify(PlenxEventKind.Message, "h\0i", -4, 8);
            Services.Notify(PlenxEventKind.Connect, "g_1");
            Services.Notify(PlenxEventKind.Disconnect, "g_2");
            Services.Notify(PlenxEventKind.Reconnect, "g_77");
            Services.Notify(PlenxEventKind.LinkQuery, "g_1", 5);
            Services.Notify(PlenxEventKind.Status, "g_1", 3, 1);
            Services.Notify(PlenxEventKind.Error, "", -9);
            Services.Notify(PlenxEventKind.DiskName, "disk \u00fc");
            Check.EqualLines(new[]
            {
                "9 service 0 type -4 msg_len 8 value 0 lost 0: h\0i",
                "10 service 1 type 0 msg_len 0 value 0 lost 0: g",
                "11 service 2 type 0 msg_len 0 value 0 lost 0: g",
                "12 service 77 type 0 msg_len 0 value 0 lost 0: g",
                "13 service 1 type 5 msg_len 0 value 0 lost 0: g",
                "14 service 1 type 3 msg_len 0 value 1 lost 0: g",
                "15 service 0 type 0 msg_len 0 value -9 lost 0: ",
                "16 service 0 type 0 msg_len 0 value 0 lost 0: disk \u00fc",
            }, queue.Events(0).Select(Show));
        }
    }

    [Test]
    public void BytesThatAreNoUtf8StayAsTheyAre()
    {
        using (var queue = new PlenxQueue())
        {
            byte[] bytes = { (byte)'a', 255, 195, (byte)'(' };
            Services.Notify(PlenxEventKind.DiskName, bytes);
            PlenxEvent taken = queue.Next(0);
            Check.Equal("a\uFFFD\uFFFD(", taken.Text);
            Check.Equal(BitConverter.ToString(bytes), BitConverter.ToString(taken.GetBytes()));
            taken.GetBytes()[0] = 0;
            Check.Equal((byte)'a', taken.GetBytes()[0]);
        }
    }

    [Test]
    public void AnEventTellsItselfInALine()
    {
        using (var queue = new PlenxQueue())
        {
            Services.Notify(PlenxEventKind.Status, "home_1", 0, 1);
            Check.Equal("Status service Pc type 0 value 1: home", queue.Next(0).ToString());
        }
    }

    [Test]
    public void TheOutcomeOfACallComesAsAnEvent()
    {
        using (var queue = new PlenxQueue())
        {
            Plenx.Start(PlenxService.Pc, "home", "argument");
            Check.Equal("14 service 1 type 0 msg_len 0 value 1 lost 0: home", Show(queue.Next(Patience)));
        }
    }

    [Test]
    public void NextWithoutAnEventGivesNullInTime()
    {
        using (var queue = new PlenxQueue())
        {
            Check.Equal(null, queue.Next(0));
            var watch = Stopwatch.StartNew();
            Check.Equal(null, queue.Next(600));  // longer than one wait inside
            Check.True(watch.ElapsedMilliseconds >= 600, "it came back too early");
        }
    }

    [Test]
    public void AWaitingThreadGetsTheEvent()
    {
        foreach (int milliseconds in new[] { Timeout.Infinite, int.MaxValue, Patience })
        {
            using (var queue = new PlenxQueue())
            {
                var waiting = Task.Factory.StartNew(() => queue.Next(milliseconds),
                    TaskCreationOptions.LongRunning);
                Thread.Sleep(300);
                Services.Notify(PlenxEventKind.Connect, "g_1");
                Check.Equal("g", InTime(waiting).Text);
            }
        }
    }

    [Test]
    public void NumbersThatMakeNoSenseThrow()
    {
        using (var queue = new PlenxQueue())
        {
            Check.Throws<ArgumentOutOfRangeException>(() => queue.Next(-2));
        }
        Check.Throws<ArgumentOutOfRangeException>(() => new PlenxQueue(0));
        Check.Throws<ArgumentOutOfRangeException>(() => new PlenxQueue(-1));
    }

    [Test]
    public void AFullQueueDropsTheOldestAndCountsIt()
    {
        using (var queue = new PlenxQueue(2))
        {
            for (int number = 0; number != 5; ++number)
            {
                Services.Notify(PlenxEventKind.Error, "", number);
            }
            Check.EqualLines(new[] { "15 service 0 type 0 msg_len 0 value 3 lost 3: ",
                "15 service 0 type 0 msg_len 0 value 4 lost 0: " }, queue.Events(0).Select(Show));
        }
    }

    [Test]
    public void TenThreadsTakeEveryEventOnce()
    {
        using (var queue = new PlenxQueue())
        {
            var taken = new ConcurrentQueue<int>();
            var threads = Enumerable.Range(0, 10).Select(_ => new Thread(() =>
            {
                foreach (PlenxEvent one in queue.Events())
                {
                    taken.Enqueue(one.Value);
                }
            })).ToList();
            threads.ForEach(thread => thread.Start());
            for (int number = 0; number != 500; ++number)
            {
                Services.Notify(PlenxEventKind.Error, "", number);
            }
            while (taken.Count < 500)
            {
                Thread.Sleep(1);
            }
            queue.Cancel();
            Check.True(threads.All(thread => thread.Join(Patience)), "a thread still waits");
            Check.True(taken.OrderBy(value => value).SequenceEqual(Enumerable.Range(0, 500)),
                "not every event came once");
        }
    }

    [Test]
    public void CancellingAndDisposingEndEveryWait()
    {
        foreach (bool cancel in new[] { true, false })
        {
            var queue = new PlenxQueue();
            PlenxResult expected = cancel ? PlenxResult.Cancelled : PlenxResult.Handle;
            var waiting = Task.Factory.StartNew(() => Check.Throws<PlenxException>(() => queue.Next()),
                TaskCreationOptions.LongRunning);
            Task<PlenxEvent> read = queue.ReadAsync();
            var iterating = Task.Factory.StartNew(() => queue.Events().Count(),
                TaskCreationOptions.LongRunning);
            Thread.Sleep(50);
            if (cancel)
            {
                queue.Cancel();
            }
            else
            {
                queue.Dispose();
            }
            Check.Equal(expected, InTime(waiting).Result);
            Check.Equal(expected, Check.Throws<PlenxException>(() => InTime(read)).Result);
            Check.Equal(expected, Check.Throws<PlenxException>(
                () => InTime(queue.ReadAsync())).Result);
            Check.Equal(0, InTime(iterating));
            queue.Dispose();
            queue.Dispose();
        }
    }

    [Test]
    public void AQueueThatIsCollectedClosesItself()
    {
        IntPtr value = IntPtr.Zero;
        var thread = new Thread(() => value = ValueOf(new PlenxQueue()));
        thread.Start();
        thread.Join();
        for (int i = 0; i != 50 && plenx_queue_cancel(value) == 0; ++i)
        {
            GC.Collect();
            GC.WaitForPendingFinalizers();
            Thread.Sleep(20);
        }
        Check.Equal((int)PlenxResult.Handle, plenx_queue_cancel(value));
    }

    [Test]
    public void TheAnswerToALinkQueryIsWhatWasSet()
    {
        using (var queue = new PlenxQueue())
        {
            queue.SetLinkStatus(PlenxService.Pc, "g", 5, 42);
            Check.Equal(42, Services.Notify(PlenxEventKind.LinkQuery, "g_1", 5));
            Check.Equal(0, Services.Notify(PlenxEventKind.LinkQuery, "g_1", 6));
            Check.Equal(42, queue.Next(0).Value);
        }
    }

    [Test]
    public void ASystemWithoutEventsGivesNoWaitHandle()
    {
        using (var queue = new PlenxQueue())
        {
            Check.Equal(null, queue.MakeWaitHandle());
        }
    }

    [Test]
    public void AReadGetsTheEventThatIsThere()
    {
        using (var queue = new PlenxQueue())
        {
            Services.Notify(PlenxEventKind.Connect, "g_1");
            Task<PlenxEvent> read = queue.ReadAsync();
            Check.True(read.IsCompleted, "it waited");
            Check.Equal("g", read.Result.Text);
        }
    }

    [Test]
    public void AReadWaitsForTheNextEventOnABackgroundThreadOutsideThePool()
    {
        using (var queue = new PlenxQueue())
        {
            // These are more reads than the pool starts threads at once. None keeps a pool thread.
            List<Task<PlenxEvent>> reads =
                Enumerable.Range(0, 100).Select(_ => queue.ReadAsync()).ToList();
            Check.Equal(7, InTime(Task.Run(() => 7)));
            for (int number = 0; number != 100; ++number)
            {
                Services.Notify(PlenxEventKind.Error, "", number);
            }
            var values = reads.Select(read => InTime(read).Value).OrderBy(value => value);
            Check.True(values.SequenceEqual(Enumerable.Range(0, 100)), "not every event came once");
        }
    }

    [Test]
    public void WhatAwaitsAReadRunsInThePool()
    {
        using (var queue = new PlenxQueue())
        {
            Task<bool> inPool = IsInPoolAfter(queue.ReadAsync());
            Thread.Sleep(50);
            Services.Notify(PlenxEventKind.Connect, "g_1");
            Check.True(InTime(inPool), "it ran on the thread that had waited");
        }
    }

    [Test]
    public void ATokenEndsAReadSoonAndTakesNoEvent()
    {
        using (var queue = new PlenxQueue())
        using (var source = new CancellationTokenSource())
        {
            Task<PlenxEvent> read = queue.ReadAsync(source.Token);
            Thread.Sleep(50);
            var watch = Stopwatch.StartNew();
            source.Cancel();
            Check.Throws<OperationCanceledException>(() => InTime(read));
            Check.True(read.IsCanceled, "the task is not cancelled");
            Check.True(watch.ElapsedMilliseconds < 10000, "it took " + watch.ElapsedMilliseconds + " ms");
            Services.Notify(PlenxEventKind.Connect, "g_1");
            Check.Throws<OperationCanceledException>(() => InTime(queue.ReadAsync(source.Token)));
            Check.Equal("g", queue.Next(0).Text);
        }
    }

    [Test]
    public void ReadsAndTokensAtOnceLoseNoEvent()
    {
        using (var queue = new PlenxQueue(100000))
        {
            var sender = Task.Factory.StartNew(() =>
            {
                for (int number = 0; number != 2000; ++number)
                {
                    Services.Notify(PlenxEventKind.Error, "", number);
                }
                return true;
            }, TaskCreationOptions.LongRunning);
            var taken = new List<int>();
            while (taken.Count < 2000)
            {
                using (var source = new CancellationTokenSource(taken.Count % 7))
                {
                    try
                    {
                        taken.Add(InTime(queue.ReadAsync(source.Token)).Value);
                    }
                    catch (OperationCanceledException)
                    {
                    }
                }
            }
            InTime(sender);
            Check.True(taken.SequenceEqual(Enumerable.Range(0, 2000)), "an event was lost");
        }
    }

    [Test]
    public void MemoryIsBackAfterManyEvents()
    {
        using (var queue = new PlenxQueue())
        {
            byte[] text = new byte[10000];
            PassOn(queue, text, 200);
            long before = ResidentMegabytes();
            PassOn(queue, text, 10000);  // 100 MB of text
            Check.True(ResidentMegabytes() - before < 30, "memory has grown");
        }
    }

    [Test]
    public void TheHostOfTheReadmeRuns()
    {
        // The host is built into the same program as the tests.
        var output = new StringWriter();
        TextWriter before = Console.Out;
        Console.SetOut(output);
        try
        {
            typeof(Runner).Assembly.GetType("Host", true)
                .GetMethod("Main", BindingFlags.Static | BindingFlags.NonPublic).Invoke(null, null);
        }
        finally
        {
            Console.SetOut(before);
        }
        Check.Equal("Status service Pc type 0 value 1: home\n", output.ToString());
    }

    private static void PassOn(PlenxQueue queue, byte[] text, int events)
    {
        for (int number = 0; number != events; ++number)
        {
            Services.Notify(PlenxEventKind.Message, text, number);
            Check.Equal(number, queue.Next(0).Type);
        }
    }

    private static long ResidentMegabytes()
    {
        GC.Collect();
        string[] words = File.ReadAllText("/proc/self/statm").Split(' ');
        return long.Parse(words[1]) * Environment.SystemPageSize >> 20;
    }

    private static async Task<bool> IsInPoolAfter(Task<PlenxEvent> read)
    {
        await read.ConfigureAwait(false);
        return Thread.CurrentThread.IsThreadPoolThread;
    }

    private static IntPtr ValueOf(PlenxQueue queue)
    {
        const BindingFlags hidden =
            BindingFlags.Instance | BindingFlags.NonPublic;
        object handle = typeof(PlenxQueue).GetField("handle", hidden).GetValue(queue);
        return ((SafeHandle)handle).DangerousGetHandle();
    }

    [DllImport("plenxsdk_c")]
    private static extern int plenx_queue_cancel(IntPtr queue);
}
