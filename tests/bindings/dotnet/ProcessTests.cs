// Tests that need a process of their own: one that ends while threads wait, and one without the DLLs.

using System;
using System.Diagnostics;
using System.Threading;
using PlenxSdk;

public sealed class ProcessTests
{
    [Test]
    public void AProcessEndsWhileReadsWait()
    {
        Check.Equal("0 ends", Child("EndWhileReadsWait"));
    }

    [Test]
    public void AMissingDllIsTold()
    {
        string told = Child("Open", libraries: "/nowhere");
        Check.True(told.StartsWith("1 DllNotFoundException: plenxsdk_c.dll, or a DLL that it needs, "
            + "was not found. They run on 64-bit Windows only"), told);
    }

    [Test]
    public void AnOlderDllIsTold()
    {
        string told = Child("OpenOfOlderDll");
        Check.True(told.StartsWith("1 PlenxException: The host's header is newer than plenxsdk_c.dll. "
            + "plenx_open: plenx.h of the host is newer"), told);
    }

    // Gives the exit code and the output of another process of this program.
    private static string Child(string name, string libraries = null)
    {
        string program = typeof(ProcessTests).Assembly.Location;
        var start = new ProcessStartInfo("mono", "\"" + program + "\" child " + name)
        {
            UseShellExecute = false,
            RedirectStandardOutput = true,
        };
        if (libraries != null)
        {
            start.EnvironmentVariables["LD_LIBRARY_PATH"] = libraries;
        }
        using (Process process = Process.Start(start))
        {
            string output = process.StandardOutput.ReadToEnd();
            if (!process.WaitForExit(30000))
            {
                process.Kill();
                return "The process has not ended.";
            }
            return process.ExitCode + " " + output.Trim();
        }
    }
}

/// <summary>What the processes of those tests do.</summary>
public static class Children
{
    public static int Run(string name)
    {
        try
        {
            switch (name)
            {
                case "Open":
                    Plenx.Open();
                    return 0;
                case "OpenOfOlderDll":
                    CheckResult(plenx_open(2));
                    return 0;
                case "EndWhileReadsWait":
                    var queue = new PlenxQueue();
                    for (int i = 0; i != 5; ++i)
                    {
                        queue.ReadAsync();
                        queue.ReadAsync(new CancellationTokenSource().Token);
                    }
                    Console.WriteLine("ends");
                    return 0;
                default:
                    return 2;
            }
        }
        catch (Exception e)
        {
            Console.WriteLine(e.GetType().Name + ": " + e.Message);
            return 1;
        }
    }

    // The constant of the assembly cannot be changed, so the call is made as Plenx.Open makes it.
    private static void CheckResult(int result)
    {
        try
        {
            typeof(Plenx).Assembly.GetType("PlenxSdk.Call").GetMethod("Check",
                System.Reflection.BindingFlags.Static | System.Reflection.BindingFlags.NonPublic)
                .Invoke(null, new object[] { result });
        }
        catch (System.Reflection.TargetInvocationException e)
        {
            throw e.InnerException;
        }
    }

    [System.Runtime.InteropServices.DllImport("plenxsdk_c")]
    private static extern int plenx_open(uint header_abi);
}
