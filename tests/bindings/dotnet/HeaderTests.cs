// The declarations of the binding are those of plenx.h, and none is forgotten.

using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using PlenxSdk;

public sealed class HeaderTests
{
    private const BindingFlags All = BindingFlags.Static | BindingFlags.Instance
        | BindingFlags.Public | BindingFlags.NonPublic;

    private static readonly Type Native = typeof(Plenx).Assembly.GetType("PlenxSdk.Native", true);
    private static readonly Type NativeEvent = Native.GetNestedType("Event", All);

    private static readonly Dictionary<string, string> Types = new Dictionary<string, string>
    {
        { "void", "Void" }, { "plenx_result", "Int32" }, { "int32_t", "Int32" },
        { "uint32_t", "UInt32" }, { "int64_t", "Int64" }, { "uint64_t", "UInt64" },
        { "size_t", "UIntPtr" }, { "size_t*", "UIntPtr*" }, { "int32_t*", "Int32*" },
        { "int64_t*", "Int64*" }, { "char*", "Byte*" }, { "const char*", "Byte*" },
        { "const void*", "Void*" }, { "void*", "IntPtr" }, { "plenx_queue*", "IntPtr" },
        { "plenx_queue**", "IntPtr*" }, { "const plenx_event*", "Event*" },
        { "const plenx_event**", "Event**" },
    };

    // The lines of one kind that plenx_header.py prints, as "name value".
    private static IEnumerable<string> Declared(string kind)
    {
        return File.ReadAllLines(Environment.GetEnvironmentVariable("PLENX_DECLARATIONS"))
            .Where(line => line.StartsWith(kind + " ")).Select(line => line.Substring(kind.Length + 1));
    }

    private static IEnumerable<MethodInfo> Functions()
    {
        return Native.GetMethods(All).Where(method => method.Name.StartsWith("plenx_"));
    }

    [Test]
    public void EveryFunctionButThoseOfObserversHasItsTypesAndThereIsNoOther()
    {
        var expected = Declared("function").Where(line => !line.Contains("observe"))
            .Select(line => line.Split(new[] { ' ' }, 2)).Select(parts => parts[0] + " "
                + string.Join(", ", parts[1].Split(new[] { ", " }, 0).Select(type => Types[type])));
        var seen = Functions().Select(function => function.Name + " " + string.Join(", ",
            new[] { function.ReturnType }
                .Concat(function.GetParameters().Select(parameter => parameter.ParameterType))
                .Select(type => type.Name)));
        Check.EqualLines(expected.OrderBy(line => line), seen.OrderBy(line => line));
    }

    [Test]
    public void EveryFunctionIsFoundByItsNameInTheDll()
    {
        foreach (MethodInfo function in Functions())
        {
            Marshal.Prelink(function);
            DllImportAttribute import = function.GetCustomAttribute<DllImportAttribute>();
            Check.Equal("plenxsdk_c", import.Value);
            Check.Equal(CallingConvention.Cdecl, import.CallingConvention);
            Check.True(import.ExactSpelling, function.Name + " may be found under another name");
        }
    }

    [Test]
    public void EveryConstantHasItsValueAndThereIsNoOther()
    {
        var seen = new List<string> { "PLENX_OK 0", "PLENX_SIZE_TO_NUL -1",
            "PLENX_ABI " + Native.GetField("Abi", All).GetRawConstantValue() };
        seen.AddRange(Members("PLENX_", typeof(PlenxService)));
        seen.AddRange(Members("PLENX_KEY_", typeof(PlenxKey)));
        seen.AddRange(Members("PLENX_STATUS_", typeof(PlenxStatus)));
        seen.AddRange(Members("PLENX_EVENT_", typeof(PlenxEventKind)));
        seen.AddRange(Members("PLENX_E_", typeof(PlenxResult))
            .Select(line => line.Replace("PLENX_E_INVALID_PARAMETER", "PLENX_INVALID_PARAMETER")));
        Check.EqualLines(Declared("constant").OrderBy(line => line), seen.OrderBy(line => line));
    }

    [Test]
    public void TheEventLiesAsInC()
    {
        var seen = NativeEvent.GetFields(All).Select(field => "plenx_event." + field.Name + " "
            + Marshal.OffsetOf(NativeEvent, field.Name) + " "
            + (field.FieldType.IsPointer ? IntPtr.Size : Marshal.SizeOf(field.FieldType)));
        Check.EqualLines(Declared("field").Where(line => line.StartsWith("plenx_event.")), seen);
        Check.Equal(Declared("struct").First(line => line.StartsWith("plenx_event ")),
            "plenx_event " + Marshal.SizeOf(NativeEvent));
    }

    // Gives lines such as "PLENX_EVENT_LINK_QUERY 13" for LinkQuery.
    private static IEnumerable<string> Members(string prefix, Type type)
    {
        return Enum.GetNames(type).Select(name => prefix + InCapitals(name) + " "
            + Convert.ToInt64(Enum.Parse(type, name)));
    }

    private static string InCapitals(string name)
    {
        string separated = string.Concat(name.Select((letter, place) =>
            place > 0 && !char.IsLower(letter) ? "_" + letter : letter.ToString()));
        return separated.ToUpperInvariant();
    }
}
