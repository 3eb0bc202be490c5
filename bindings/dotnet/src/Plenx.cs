using System;

namespace PlenxSdk
{
    /// <summary>The library, which runs a distributed file system on this PC.</summary>
    /// <remarks>
    /// Every call that changes something queues a job and returns at once. The outcome arrives
    /// later as a <see cref="PlenxEvent"/>. Three calls wait while the office service is started,
    /// stopped or told of a device: Destroy, GetOfficeDir and a second Init. A call that the library
    /// does not take throws <see cref="PlenxException"/>. Every call is allowed on any thread.
    /// plenx.h in the SDK says everything about each operation; the functions have the same names
    /// there.
    /// </remarks>
    public static unsafe class Plenx
    {
        private static volatile bool opened;

        /// <summary>Loads the DLLs and compares their version with this assembly. Every other call
        /// does this by itself.</summary>
        /// <exception cref="PlatformNotSupportedException">The process has 32 bits.</exception>
        /// <exception cref="DllNotFoundException">A DLL is missing, or this is not Windows.</exception>
        /// <exception cref="PlenxException">The DLLs are older than this assembly.</exception>
        public static void Open()
        {
            if (opened)
            {
                return;
            }
            if (IntPtr.Size != 8)
            {
                throw new PlatformNotSupportedException("plenxsdk needs a 64-bit process. Set the "
                    + "project's PlatformTarget to x64, and Prefer32Bit to false.");
            }
            try
            {
                Call.Check(Native.plenx_open(Native.Abi));
            }
            catch (DllNotFoundException e)
            {
                throw new DllNotFoundException("plenxsdk_c.dll, or a DLL that it needs, was not found. "
                    + "They run on 64-bit Windows only and must lie in one folder: beside the program, "
                    + "or in runtimes\\win-x64\\native there.", e);
            }
            opened = true;
        }

        /// <summary>Makes the library ready. Open a queue first, or you miss early events. The process
        /// must be elevated.</summary>
        /// <remarks>The first call of a process waits for no job. Every later one waits while the office
        /// service is started, stopped or told of a device.</remarks>
        /// <param name="install">The install folder, without a trailing backslash. It holds
        /// plenxservice.exe and the driver.</param>
        /// <param name="data">The data folder, which must exist. Its sub-folder "plenx" is DELETED with
        /// everything in it.</param>
        /// <param name="third">A text for the companion library only.</param>
        /// <param name="flag">A flag for the companion library only.</param>
        public static void Init(string install, string data, string third = "", bool flag = false)
        {
            Open();
            byte[] first = Utf8.Bytes(install, nameof(install));
            byte[] second = Utf8.Bytes(data, nameof(data));
            byte[] last = Utf8.Bytes(third, nameof(third));
            fixed (byte* a = first, b = second, c = last)
            {
                Call.Check(Native.plenx_init(a, Utf8.Length(first), b, Utf8.Length(second), c,
                    Utf8.Length(last), flag ? 1 : 0));
            }
        }

        /// <summary>Asks the companion library to uninstall its packages. A host need not call it. Waits
        /// while the office service is started, stopped or told of a device.</summary>
        public static void Destroy()
        {
            Open();
            Call.Check(Native.plenx_destroy());
        }

        /// <summary>Tells whether a service runs. Waits while the job of the first Init is running.
        /// </summary>
        /// <param name="service">The service; Combined asks about the driver.</param>
        /// <param name="key">NotRunning; every other key gives 0.</param>
        /// <returns>1 while the service is not running, else 0.</returns>
        public static long GetInt64(PlenxService service, PlenxKey key)
        {
            Open();
            long value;
            Call.Check(Native.plenx_get_int64((uint)service, (uint)key, &value));
            return value;
        }

        /// <summary>Always gives the empty text, because string settings cannot be read back.</summary>
        /// <param name="service">The service.</param>
        /// <param name="key">It makes no difference.</param>
        /// <returns>The empty text.</returns>
        public static string GetString(PlenxService service, PlenxKey key)
        {
            Open();
            return Call.Read((text, capacity, length) =>
                Native.plenx_get_string((uint)service, (uint)key, text, capacity, length));
        }

        /// <summary>Queues a change of a setting, which the service receives at its next start.</summary>
        /// <param name="service">The service; Combined means PC and phone.</param>
        /// <param name="key">The setting.</param>
        /// <param name="value">Its value.</param>
        public static void SetInt64(PlenxService service, PlenxKey key, long value)
        {
            Open();
            Call.Check(Native.plenx_set_int64((uint)service, (uint)key, value));
        }

        /// <summary>Queues a change of a setting, which the service receives at its next start.</summary>
        /// <param name="service">The service; Combined means PC and phone.</param>
        /// <param name="key">The setting.</param>
        /// <param name="value">Its value.</param>
        public static void SetString(PlenxService service, PlenxKey key, string value)
        {
            Open();
            byte[] bytes = Utf8.Bytes(value, nameof(value));
            fixed (byte* text = bytes)
            {
                Call.Check(Native.plenx_set_string((uint)service, (uint)key, text,
                    Utf8.Length(bytes)));
            }
        }

        /// <summary>Queues the start of a service with a group. The outcome comes as
        /// <see cref="PlenxStatus.Start"/>.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        /// <param name="argument">An argument for the group, not empty.</param>
        public static void Start(PlenxService service, string group, string argument)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] bytes = Utf8.Bytes(argument, nameof(argument));
            fixed (byte* g = name, a = bytes)
            {
                Call.Check(Native.plenx_start((uint)service, g, Utf8.Length(name), a,
                    Utf8.Length(bytes)));
            }
        }

        /// <summary>Queues the stop of a service, whatever other groups it has. The outcome
        /// comes as <see cref="PlenxStatus.Stop"/>.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        public static void Stop(PlenxService service, string group)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            fixed (byte* g = name)
            {
                Call.Check(Native.plenx_stop((uint)service, g, Utf8.Length(name)));
            }
        }

        /// <summary>Queues the news that the local device is online.
        /// <see cref="PlenxStatus.Online"/> comes if the PC or phone service does not take it.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        /// <param name="device">The id of the device, not empty.</param>
        /// <param name="data">Any bytes.</param>
        public static void LocalDeviceOnline(PlenxService service, string group, string device,
            byte[] data)
        {
            Open();
            if (data == null)
            {
                throw new ArgumentNullException(nameof(data));
            }
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] id = Utf8.Bytes(device, nameof(device));
            fixed (byte* g = name, d = id, bytes = data)
            {
                Call.Check(Native.plenx_local_device_online((uint)service, g, Utf8.Length(name), d,
                    Utf8.Length(id), bytes, (ulong)data.Length));
            }
        }

        /// <summary>Queues the news that a remote device is online.
        /// <see cref="PlenxStatus.Online"/> may follow.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        /// <param name="device">The id of the device, not empty.</param>
        public static void RemoteDeviceOnline(PlenxService service, string group, string device)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] id = Utf8.Bytes(device, nameof(device));
            fixed (byte* g = name, d = id)
            {
                Call.Check(Native.plenx_remote_device_online((uint)service, g, Utf8.Length(name), d,
                    Utf8.Length(id)));
            }
        }

        /// <summary>Queues the news that the local device goes offline.
        /// <see cref="PlenxStatus.Offline"/> may follow.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        /// <param name="device">The id of the device, not empty.</param>
        /// <param name="trigger">The reason, a number of the service's own; 0 means none.</param>
        public static void LocalDeviceOffline(PlenxService service, string group, string device,
            int trigger = 0)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] id = Utf8.Bytes(device, nameof(device));
            fixed (byte* g = name, d = id)
            {
                Call.Check(Native.plenx_local_device_offline((uint)service, g, Utf8.Length(name), d,
                    Utf8.Length(id), trigger));
            }
        }

        /// <summary>Queues the news that a remote device goes offline.
        /// <see cref="PlenxStatus.Offline"/> may follow.</summary>
        /// <param name="service">The service.</param>
        /// <param name="group">The name of the group, not empty.</param>
        /// <param name="device">The id of the device, not empty.</param>
        /// <param name="trigger">The reason, a number of the service's own; 0 means none.</param>
        public static void RemoteDeviceOffline(PlenxService service, string group, string device,
            int trigger = 0)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] id = Utf8.Bytes(device, nameof(device));
            fixed (byte* g = name, d = id)
            {
                Call.Check(Native.plenx_remote_device_offline((uint)service, g, Utf8.Length(name), d,
                    Utf8.Length(id), trigger));
            }
        }

        /// <summary>Queues the news, for the PC service, that this device has a new name.</summary>
        /// <param name="name">The new name, not empty.</param>
        public static void DeviceNameChanged(string name)
        {
            Open();
            byte[] bytes = Utf8.Bytes(name, nameof(name));
            fixed (byte* text = bytes)
            {
                Call.Check(Native.plenx_device_name_changed(text, Utf8.Length(bytes)));
            }
        }

        /// <summary>Queues, for the PC service, a message that a remote device has sent.</summary>
        /// <param name="type">The service gets it unchanged.</param>
        /// <param name="msgLen">The service gets it unchanged; it need not be the message's length.
        /// </param>
        /// <param name="message">Any bytes.</param>
        public static void RecvRemoteMessage(int type, uint msgLen, byte[] message)
        {
            Open();
            if (message == null)
            {
                throw new ArgumentNullException(nameof(message));
            }
            fixed (byte* bytes = message)
            {
                Call.Check(Native.plenx_recv_remote_message(type, msgLen, bytes,
                    Utf8.Length(message)));
            }
        }

        /// <summary>Asks the companion library for the folder of a device of a group. Waits while the
        /// office service is started, stopped or told of a device.</summary>
        /// <param name="group">The name of the group.</param>
        /// <param name="device">The id of the device.</param>
        /// <param name="relative">A relative name.</param>
        /// <param name="code">Receives the companion library's own code.</param>
        /// <returns>The folder, a backslash and the relative name.</returns>
        public static string GetOfficeDir(string group, string device, string relative, out int code)
        {
            Open();
            byte[] name = Utf8.Bytes(group, nameof(group));
            byte[] id = Utf8.Bytes(device, nameof(device));
            byte[] file = Utf8.Bytes(relative, nameof(relative));
            int told = 0;
            string path = Call.Read((text, capacity, length) =>
            {
                int answer;
                int result;
                fixed (byte* g = name, d = id, r = file)
                {
                    result = Native.plenx_get_office_dir(g, Utf8.Length(name), d, Utf8.Length(id), r,
                        Utf8.Length(file), text, capacity, length, &answer);
                }
                told = answer;
                return result;
            });
            code = told;
            return path;
        }
    }
}
