// Runs the tests of the binding and reports them as JUnit does, because Debian 13 has no NUnit.

using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Security;
using System.Text;

/// <summary>Marks a test, a public method without arguments that throws when it fails.</summary>
[AttributeUsage(AttributeTargets.Method)]
public sealed class TestAttribute : Attribute
{
}

public sealed class FailedCheck : Exception
{
    public FailedCheck(string message) : base(message)
    {
    }
}

public static class Check
{
    public static void Equal<T>(T expected, T seen)
    {
        if (!EqualityComparer<T>.Default.Equals(expected, seen))
        {
            throw new FailedCheck("expected <" + expected + ">, but it is <" + seen + ">");
        }
    }

    /// <summary>Compares line by line.</summary>
    public static void EqualLines(IEnumerable<string> expected, IEnumerable<string> seen)
    {
        Equal(string.Join("\n", expected), string.Join("\n", seen));
    }

    public static void True(bool condition, string otherwise)
    {
        if (!condition)
        {
            throw new FailedCheck(otherwise);
        }
    }

    public static T Throws<T>(Action action) where T : Exception
    {
        try
        {
            action();
        }
        catch (T e)
        {
            return e;
        }
        throw new FailedCheck("nothing threw " + typeof(T).Name);
    }
}

public static class Runner
{
    // After this time, the run no longer waits for a test that hangs, and the report names it.
    private const int LongestTestMilliseconds = 60000;

    public static int Main(string[] arguments)
    {
        if (arguments.Length == 2 && arguments[0] == "child")
        {
            return Children.Run(arguments[1]);
        }
        if (arguments.Length < 1)
        {
            Console.Error.WriteLine("usage: tests.exe REPORT.xml [WORD]");
            return 2;
        }
        return RunAll(arguments[0], arguments.Length > 1 ? arguments[1] : "");
    }

    private static int RunAll(string report, string word)
    {
        var tests = typeof(Runner).Assembly.GetTypes().SelectMany(type => type.GetMethods())
            .Where(method => method.GetCustomAttribute<TestAttribute>() != null)
            .Where(method => method.Name.Contains(word))
            .OrderBy(method => method.DeclaringType.Name, StringComparer.Ordinal).ToList();
        var cases = new StringBuilder();
        int failed = 0;
        foreach (MethodInfo test in tests)
        {
            var watch = Stopwatch.StartNew();
            string failure = FailureOf(test);
            string name = test.DeclaringType.Name + "." + test.Name;
            cases.Append("  <testcase classname=\"" + test.DeclaringType.Name + "\" name=\"" + test.Name
                + "\" time=\"" + watch.ElapsedMilliseconds / 1000.0 + "\"");
            cases.Append(failure == null ? "/>\n"
                : "><failure>" + SecurityElement.Escape(failure) + "</failure></testcase>\n");
            if (failure != null)
            {
                ++failed;
                Console.WriteLine(name + ": ***Failed\n" + failure);
            }
        }
        File.WriteAllText(report, "<testsuite name=\"dotnet\" tests=\"" + tests.Count
            + "\" failures=\"" + failed + "\" skipped=\"0\">\n" + cases + "</testsuite>\n");
        Console.WriteLine(tests.Count - failed + " passed, " + failed + " failed");
        return failed > 0 || tests.Count == 0 ? 1 : 0;
    }

    // Returns null when the test passes.
    private static string FailureOf(MethodInfo test)
    {
        Exception thrown = null;
        var thread = new System.Threading.Thread(() =>
        {
            try
            {
                test.Invoke(Activator.CreateInstance(test.DeclaringType), null);
            }
            catch (TargetInvocationException e)
            {
                thrown = e.InnerException;
            }
        });
        thread.IsBackground = true;
        thread.Start();
        if (!thread.Join(LongestTestMilliseconds))
        {
            return "The test has not ended.";
        }
        return thrown == null ? null : thrown.ToString();
    }
}
