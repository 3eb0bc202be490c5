// Each call reaches the library with its arguments, or says in an exception why it failed.

using System;
using System.Linq;
using System.Text;
using PlenxSdk;

public sealed class CallTests
{
    private const string Text = "n\u00e4me\0\U0001F600";

    public CallTests()
    {
        Services.Start();
    }

    private static void Reaches(Action call, int request, params byte[][] arguments)
    {
        call();
        Check.True(Services.HaveReceived(request, arguments), "the service got no such request");
    }

    private static byte[] InMessage(string text)
    {
        return Encoding.UTF8.GetBytes(text + "\0");
    }

    private static byte[] InMessage(int number)
    {
        return BitConverter.GetBytes(number);
    }

    [Test]
    public void StartReachesTheService()
    {
        Reaches(() => Plenx.Start(PlenxService.Pc, Text, "argument"), 0, InMessage(Text + "_1"),
            InMessage(2), InMessage("argument"));
    }

    [Test]
    public void StopReachesTheService()
    {
        Reaches(() => Plenx.Stop(PlenxService.Pc, Text), 1, InMessage(Text + "_1"));
    }

    [Test]
    public void LocalDeviceOnlineReachesTheService()
    {
        Reaches(() => Plenx.LocalDeviceOnline(PlenxService.Pc, "g", Text, new byte[] { 0, 255 }), 2,
            InMessage("g_1"), InMessage(Text), InMessage(0), InMessage(2), new byte[] { 0, 255 });
    }

    [Test]
    public void LocalDeviceOnlineMayHaveNoBytes()
    {
        Reaches(() => Plenx.LocalDeviceOnline(PlenxService.Pc, "g", Text, new byte[0]), 2,
            InMessage("g_1"), InMessage(Text), InMessage(0), InMessage(0));
    }

    [Test]
    public void RemoteDeviceOnlineReachesTheService()
    {
        Reaches(() => Plenx.RemoteDeviceOnline(PlenxService.Pc, Text, "device"), 2,
            InMessage(Text + "_1"), InMessage("device"), InMessage(1), InMessage(0));
    }

    [Test]
    public void LocalDeviceOfflineReachesTheService()
    {
        Reaches(() => Plenx.LocalDeviceOffline(PlenxService.Pc, "g", Text, -5), 3,
            InMessage("g_1"), InMessage(Text), InMessage(0), InMessage(-5));
    }

    [Test]
    public void RemoteDeviceOfflineReachesTheService()
    {
        Reaches(() => Plenx.RemoteDeviceOffline(PlenxService.Pc, "g", Text, 99), 3,
            InMessage("g_1"), InMessage(Text), InMessage(1), InMessage(99));
    }

    [Test]
    public void DeviceNameChangedReachesTheService()
    {
        Reaches(() => Plenx.DeviceNameChanged(Text), 4, InMessage(Text));
    }

    [Test]
    public void RecvRemoteMessageReachesTheService()
    {
        Reaches(() => Plenx.RecvRemoteMessage(-4, 4000000000, new byte[] { 0, 254, 7 }), 5,
            InMessage(-4), BitConverter.GetBytes(4000000000), new byte[] { 0, 254, 7, 0 });
    }

    [Test]
    public void SettingsReachTheServiceAtItsNextStart()
    {
        Plenx.SetInt64(PlenxService.Pc, PlenxKey.Integer2, -9000000000);
        Plenx.Start(PlenxService.Pc, "g", "a");
        Check.True(Services.HaveReceived(8, InMessage(2), BitConverter.GetBytes(-9000000000)),
            "no integer");
        Plenx.SetString(PlenxService.Pc, PlenxKey.Locale, Text);
        Plenx.Start(PlenxService.Pc, "g", "a");
        Check.True(Services.HaveReceived(7, InMessage(1), InMessage(Text)), "no text");
    }

    [Test]
    public void GetInt64TellsWhetherAServiceRuns()
    {
        Check.Equal(0L, Plenx.GetInt64(PlenxService.Pc, PlenxKey.NotRunning));
        Check.Equal(1L, Plenx.GetInt64(PlenxService.Phone, PlenxKey.NotRunning));
    }

    [Test]
    public void GetStringGivesTheEmptyText()
    {
        Check.Equal("", Plenx.GetString(PlenxService.Pc, PlenxKey.Locale));
    }

    [Test]
    public void DestroyReachesTheCompanionLibrary()
    {
        Plenx.Destroy();
        Check.True(Services.Received().Contains("UninstallPackages()"), "nothing was uninstalled");
    }

    [Test]
    public void GetOfficeDirGivesTheFolderAndTheCode()
    {
        Services.SetOfficeDir("C:\\n\u00e4me", -7);
        int code;
        Check.Equal("C:\\n\u00e4me\\r\0s", Plenx.GetOfficeDir("g", "d", "r\0s", out code));
        Check.Equal(-7, code);
        Check.True(Services.Received().Contains("GetGroupNeighborDistributedDir(g, d)"), "no call");
    }

    [Test]
    public void ATextOfAnyLengthComesOut()
    {
        foreach (int length in new[] { 0, 1021, 1022, 1023, 100000 })
        {
            Services.SetOfficeDir(new string('d', length), 0);
            int code;
            Check.Equal(new string('d', length) + "\\r", Plenx.GetOfficeDir("g", "d", "r", out code));
        }
    }

    [Test]
    public void AnEmptyTextThrowsTheLibrarysOwnCode()
    {
        PlenxException e = Check.Throws<PlenxException>(() => Plenx.Start(PlenxService.Pc, "", "a"));
        Check.Equal(PlenxResult.InvalidParameter, e.Result);
        Check.Equal("A text that must not be empty is empty. (26)", e.Message);
    }

    [Test]
    public void AFailureOfTheLayerHasItsNumberSentenceAndDetail()
    {
        var queue = new PlenxQueue();
        queue.Dispose();
        PlenxException e = Check.Throws<PlenxException>(queue.Cancel);
        Check.Equal(PlenxResult.Handle, e.Result);
        const string sentence =
            "The handle was closed, was never opened, or is of the other kind.";
        const string detail =
            "plenx_queue_cancel: the handle was closed, was never opened, or is of the other kind";
        Check.Equal(sentence, e.Sentence);
        Check.Equal(detail, e.Detail);
        Check.Equal(sentence + " " + detail + " (-5)", e.Message);
    }

    [Test]
    public void NullThrowsAndNamesTheArgument()
    {
        Check.Equal("group", Check.Throws<ArgumentNullException>(
            () => Plenx.Stop(PlenxService.Pc, null)).ParamName);
        Check.Equal("data", Check.Throws<ArgumentNullException>(
            () => Plenx.LocalDeviceOnline(PlenxService.Pc, "g", "d", null)).ParamName);
        Check.Equal("message", Check.Throws<ArgumentNullException>(
            () => Plenx.RecvRemoteMessage(1, 2, null)).ParamName);
        Check.Equal("install", Check.Throws<ArgumentNullException>(
            () => Plenx.Init(null, "C:\\Data")).ParamName);
    }

    [Test]
    public void ATextWithoutUtf8ThrowsAndCallsNothing()
    {
        Check.Throws<EncoderFallbackException>(() => Plenx.Stop(PlenxService.Pc, "a\uD800b"));
        Check.Equal(0, Services.Received().Count(line => !line.StartsWith("PLENXPCService 4 ")));
    }

    [Test]
    public void AtTheEndOfTheProcessEveryCallThrowsEnding()
    {
        Services.SetEnding(true);
        try
        {
            Check.Equal(PlenxResult.Ending, Check.Throws<PlenxException>(
                () => Plenx.Stop(PlenxService.Pc, "g")).Result);
            Check.Equal(PlenxResult.Ending, Check.Throws<PlenxException>(
                () => new PlenxQueue()).Result);
            Plenx.Destroy();
        }
        finally
        {
            Services.SetEnding(false);
        }
    }
}
