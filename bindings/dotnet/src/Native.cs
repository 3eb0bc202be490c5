using System;
using System.Runtime.InteropServices;

namespace PlenxSdk
{
    /// <summary>The functions of plenx.h, with types that need no marshalling.</summary>
    /// <remarks>
    /// plenx_observe and plenx_unobserve are left out, because the library would call the functions
    /// of an observer on threads of its own. A queue gives the same notifications.
    /// </remarks>
    internal static unsafe class Native
    {
        // The managed assembly must not have the name of one of the DLLs, which lie beside it.
        private const string Dll = "plenxsdk_c";

        internal const uint Abi = 1;

        /// <summary>plenx_event.</summary>
        [StructLayout(LayoutKind.Sequential)]
        internal struct Event
        {
            internal uint size;
            internal uint kind;
            internal uint service;
            internal int type;
            internal uint msg_len;
            internal int value;
            internal ulong lost;
            internal byte* text;
            internal UIntPtr text_length;
        }

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern uint plenx_abi();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_open(uint header_abi);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_last_error(byte* text, UIntPtr capacity, UIntPtr* length);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern byte* plenx_result_text(int result);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_init(byte* install, UIntPtr install_len, byte* data,
            UIntPtr data_len, byte* third, UIntPtr third_len, int flag);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_destroy();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_get_int64(uint service, uint key, long* value);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_get_string(uint service, uint key, byte* text,
            UIntPtr capacity, UIntPtr* length);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_set_int64(uint service, uint key, long value);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_set_string(uint service, uint key, byte* value,
            UIntPtr value_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_start(uint service, byte* group, UIntPtr group_len,
            byte* argument, UIntPtr argument_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_stop(uint service, byte* group, UIntPtr group_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_local_device_online(uint service, byte* group,
            UIntPtr group_len, byte* device, UIntPtr device_len, void* data, ulong size);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_remote_device_online(uint service, byte* group,
            UIntPtr group_len, byte* device, UIntPtr device_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_local_device_offline(uint service, byte* group,
            UIntPtr group_len, byte* device, UIntPtr device_len, int trigger);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_remote_device_offline(uint service, byte* group,
            UIntPtr group_len, byte* device, UIntPtr device_len, int trigger);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_device_name_changed(byte* name, UIntPtr name_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_recv_remote_message(int type, uint msg_len, byte* message,
            UIntPtr message_len);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_get_office_dir(byte* group, UIntPtr group_len,
            byte* device, UIntPtr device_len, byte* relative, UIntPtr relative_len, byte* text,
            UIntPtr capacity, UIntPtr* length, int* code);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_queue_open(uint capacity, IntPtr* queue);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_queue_next(IntPtr queue, uint milliseconds,
            Event** result);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern void plenx_event_free(Event* freed);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern IntPtr plenx_queue_wait_handle(IntPtr queue);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_queue_set_link_status(IntPtr queue, uint service,
            byte* group, UIntPtr group_len, uint link, int status);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_queue_cancel(IntPtr queue);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        internal static extern int plenx_queue_close(IntPtr queue);
    }
}
