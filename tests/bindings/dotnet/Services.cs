// Plays the services; tests/bindings/fake_services.cpp describes the functions.

using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text;
using PlenxSdk;

public static class Services
{
    private static readonly object Once = new object();
    private static bool ready;

    /// <summary>Makes the library ready, once, and forgets what was received before.</summary>
    public static void Start()
    {
        lock (Once)
        {
            if (!ready)
            {
                fake_machine();
                Plenx.Init("C:\\App", "C:\\Data", "third", true);
                ready = true;
            }
        }
        fake_wait_for_init();
        fake_received();
    }

    public static int Notify(PlenxEventKind kind, string text = "", int first = 0, int second = 0)
    {
        return Notify(kind, Encoding.UTF8.GetBytes(text), first, second);
    }

    public static int Notify(PlenxEventKind kind, byte[] text, int first = 0, int second = 0)
    {
        return fake_notify((int)kind, text, (UIntPtr)text.Length, first, second);
    }

    public static List<string> Received()
    {
        string text = Marshal.PtrToStringAnsi(fake_received());
        return text.Split(new[] { '\n' }, StringSplitOptions.RemoveEmptyEntries).ToList();
    }

    /// <summary>Whether the PC service got this request; the arguments are the end of a message.
    /// </summary>
    public static bool HaveReceived(int request, params byte[][] arguments)
    {
        string head = "PLENXPCService " + request + " ";
        string end = string.Concat(arguments.Select(Hexadecimal));
        return Received().Any(line => line.StartsWith(head) && line.EndsWith(end));
    }

    public static void SetOfficeDir(string folder, int code)
    {
        byte[] bytes = Encoding.UTF8.GetBytes(folder);
        fake_office_dir(bytes, (UIntPtr)bytes.Length, code);
    }

    public static void SetEnding(bool ending)
    {
        fake_ending(ending ? 1 : 0);
    }

    private static string Hexadecimal(byte[] bytes)
    {
        return string.Concat(bytes.Select(one => one.ToString("x2")));
    }

    [DllImport("plenxsdk_c")]
    private static extern void fake_machine();

    [DllImport("plenxsdk_c")]
    private static extern void fake_wait_for_init();

    [DllImport("plenxsdk_c")]
    private static extern int fake_notify(int kind, byte[] text, UIntPtr length, int first, int second);

    [DllImport("plenxsdk_c")]
    private static extern IntPtr fake_received();

    [DllImport("plenxsdk_c")]
    private static extern void fake_office_dir(byte[] folder, UIntPtr length, int code);

    [DllImport("plenxsdk_c")]
    private static extern void fake_ending(int ending);
}
