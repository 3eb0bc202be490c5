namespace PlenxSdk
{
    /// <summary>The service that an operation addresses.</summary>
    public enum PlenxService : uint
    {
        /// <summary>The office service, which the companion library runs.</summary>
        Office = 0,

        /// <summary>The Windows service "PlenxPcSvc".</summary>
        Pc = 1,

        /// <summary>The Windows service "PlenxPhoneSvc".</summary>
        Phone = 2,

        /// <summary>Several services; plenx.h says which ones in which operation.</summary>
        Combined = 3,
    }

    /// <summary>The key of a setting, or of a question for <see cref="Plenx.GetInt64"/>.</summary>
    public enum PlenxKey : uint
    {
        /// <summary>An integer setting.</summary>
        Integer0 = 0,

        /// <summary>The locale, a text, such as "en_US".</summary>
        Locale = 1,

        /// <summary>Another integer setting.</summary>
        Integer2 = 2,

        /// <summary>A question: 1 while the service is not running, else 0.</summary>
        NotRunning = 5,
    }

    /// <summary>What happened, in an event of the kind <see cref="PlenxEventKind.Status"/>. It is the
    /// <see cref="PlenxEvent.Type"/> of that event, which may have other numbers of the service's own.
    /// </summary>
    public enum PlenxStatus
    {
        /// <summary>A start has ended; the event's value says whether it succeeded.</summary>
        Start = 0,

        /// <summary>A stop has ended.</summary>
        Stop = 1,

        /// <summary>A device came online, or could not.</summary>
        Online = 2,

        /// <summary>A device went offline, or could not.</summary>
        Offline = 3,
    }

    /// <summary>What an event reports. A later DLL may have further kinds.</summary>
    public enum PlenxEventKind : uint
    {
        /// <summary>A service sends a message: Type, MsgLen, and the text or its bytes.</summary>
        Message = 9,

        /// <summary>A group of a service has been connected. The text is the group.</summary>
        Connect = 10,

        /// <summary>A group of a service has lost its connection. The text is the group.</summary>
        Disconnect = 11,

        /// <summary>A group of a service has been connected again. The text is the group.</summary>
        Reconnect = 12,

        /// <summary>A service has asked for the status of a link. Type is the number of the link, Value
        /// is the answer that it got, and the text is the group.</summary>
        LinkQuery = 13,

        /// <summary>Something started, stopped, came online or went offline. Type is a
        /// <see cref="PlenxStatus"/>, Value is 0 or 1, and the text is the group.</summary>
        Status = 14,

        /// <summary>A service reports an error of its own; Value is its code.</summary>
        Error = 15,

        /// <summary>The text is the name under which a service has mounted its disk.</summary>
        DiskName = 16,
    }

    /// <summary>Why the library did not take a call.</summary>
    public enum PlenxResult
    {
        /// <summary>A text that must not be empty is empty.</summary>
        InvalidParameter = 26,

        /// <summary>An argument cannot be used.</summary>
        Argument = -1,

        /// <summary>A buffer is too short.</summary>
        Buffer = -2,

        /// <summary>There is not enough memory.</summary>
        Memory = -3,

        /// <summary>The DLLs are older than this assembly.</summary>
        Abi = -4,

        /// <summary>The queue was closed.</summary>
        Handle = -5,

        /// <summary>The queue was cancelled.</summary>
        Cancelled = -6,

        /// <summary>The call was made inside a function of an observer.</summary>
        Deadlock = -7,

        /// <summary>The process is ending.</summary>
        Ending = -8,

        /// <summary>Something else went wrong.</summary>
        Failed = -9,
    }
}
