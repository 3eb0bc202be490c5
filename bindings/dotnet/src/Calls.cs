using System;
using System.Text;

namespace PlenxSdk
{
    /// <summary>Text as the library has it: UTF-8 with its length, which may hold a NUL.</summary>
    internal static unsafe class Utf8
    {
        // A text that cannot be encoded in UTF-8 is refused, because it would reach the service as
        // another text.
        private static readonly Encoding Strict = new UTF8Encoding(false, true);

        internal static byte[] Bytes(string text, string name)
        {
            if (text == null)
            {
                throw new ArgumentNullException(name);
            }
            return Strict.GetBytes(text);
        }

        internal static UIntPtr Length(byte[] bytes)
        {
            return (UIntPtr)bytes.Length;
        }

        /// <summary>Bytes that are not UTF-8 become U+FFFD.</summary>
        internal static string Text(byte[] bytes)
        {
            return Encoding.UTF8.GetString(bytes);
        }

        internal static string TextToNul(byte* text)
        {
            int length = 0;
            while (text[length] != 0)
            {
                ++length;
            }
            return length == 0 ? "" : Encoding.UTF8.GetString(text, length);
        }
    }

    internal static unsafe class Call
    {
        internal delegate int Reader(byte* text, UIntPtr capacity, UIntPtr* length);

        /// <summary>Throws unless the result means success.</summary>
        internal static void Check(int result)
        {
            if (result != 0)
            {
                throw new PlenxException((PlenxResult)result,
                    Utf8.TextToNul(Native.plenx_result_text(result)), LastError(result));
            }
        }

        /// <summary>Calls again while the text does not fit into the buffer.</summary>
        internal static string Read(Reader reader)
        {
            byte[] buffer = new byte[1024];
            while (true)
            {
                UIntPtr length;
                int result;
                fixed (byte* text = buffer)
                {
                    result = reader(text, (UIntPtr)buffer.Length, &length);
                }
                if (result != (int)PlenxResult.Buffer)
                {
                    Check(result);
                    return Encoding.UTF8.GetString(buffer, 0, (int)length);
                }
                buffer = new byte[checked((int)length + 1)];
            }
        }

        // 26 comes from the library itself, and plenx_last_error knows nothing of the library's
        // failures.
        private static string LastError(int result)
        {
            if (result > 0)
            {
                return "";
            }
            const int capacity = 1024;
            byte* text = stackalloc byte[capacity];
            text[0] = 0;
            Native.plenx_last_error(text, (UIntPtr)capacity, null);
            return Utf8.TextToNul(text);
        }
    }
}
