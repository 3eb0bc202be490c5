namespace PlenxSdk
{
    /// <summary>A notification. What its kind does not use is 0 or empty.</summary>
    public sealed class PlenxEvent
    {
        private readonly byte[] bytes;
        private string text;

        internal PlenxEvent(PlenxEventKind kind, PlenxService service, int type, uint msgLen, int value,
            ulong lost, byte[] bytes)
        {
            Kind = kind;
            Service = service;
            Type = type;
            MsgLen = msgLen;
            Value = value;
            Lost = lost;
            this.bytes = bytes;
        }

        /// <summary>What the event reports.</summary>
        public PlenxEventKind Kind { get; }

        /// <summary>The service, by the number in the group's name; it is not checked.</summary>
        public PlenxService Service { get; }

        /// <summary>Its meaning depends on the kind.</summary>
        public int Type { get; }

        /// <summary>A number of the service's own; never the length of the text.</summary>
        public uint MsgLen { get; }

        /// <summary>Its meaning depends on the kind.</summary>
        public int Value { get; }

        /// <summary>How many events the full queue has dropped directly before this one.</summary>
        public ulong Lost { get; }

        /// <summary>The text, never null. Bytes that are not UTF-8 are U+FFFD here.</summary>
        public string Text
        {
            get { return text ?? (text = Utf8.Text(bytes)); }
        }

        /// <summary>Copies the bytes of the text as the service has sent them.</summary>
        /// <returns>A new array.</returns>
        public byte[] GetBytes()
        {
            return (byte[])bytes.Clone();
        }

        /// <summary>Describes the event in one line, for logs.</summary>
        /// <returns>A line such as "Status service Pc type 0 value 1: home".</returns>
        public override string ToString()
        {
            return Kind + " service " + Service + " type " + Type + " value " + Value + ": " + Text;
        }
    }
}
