using System;

namespace PlenxSdk
{
    /// <summary>The library did not take a call.</summary>
    public sealed class PlenxException : Exception
    {
        internal PlenxException(PlenxResult result, string sentence, string detail)
            : base(sentence + (detail.Length == 0 ? "" : " " + detail) + " (" + (int)result + ")")
        {
            Result = result;
            Sentence = sentence;
            Detail = detail;
        }

        /// <summary>The reason as a number. A later DLL may have further numbers.</summary>
        public PlenxResult Result { get; }

        /// <summary>The constant sentence for this number.</summary>
        public string Sentence { get; }

        /// <summary>What the library says about this failure; it may be empty.</summary>
        public string Detail { get; }
    }
}
