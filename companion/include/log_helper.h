/// @file
/// The logging library LogHelper.dll.
///
/// This header declares only the parts that plenxsdk uses. Log may be called from any
/// thread, even while the process is ending; any lock may then belong for ever to a
/// thread that is gone. The class crosses a DLL border, so both sides must share one
/// compiler family and one C++ runtime.

#ifndef COMPANION_LOG_HELPER_H
#define COMPANION_LOG_HELPER_H

#include <sstream>

#if !defined(_WIN32)
#define LOGHELPER_API __attribute__((visibility("default")))
#elif defined(LOGHELPER_BUILD)
#define LOGHELPER_API __declspec(dllexport)
#else
#define LOGHELPER_API __declspec(dllimport)
#endif

/// The severity of a line; plenxsdk uses these two.
enum LOG_MESSAGE_LEVEL : int {
    LOG_MESSAGE_LEVEL_INFO = 3,   ///< progress and success
    LOG_MESSAGE_LEVEL_ERROR = 4,  ///< invalid arguments and failures
};

/// The logger.
class OvLogger {
public:
    /// The process-wide logger.
    /// @return May be null; plenxsdk then drops its lines.
    LOGHELPER_API static OvLogger* GetInstance();

    /// Writes the text of the stream as one line.
    /// @param level   3 or 4.
    /// @param stream  Holds the text of the line, without a line end.
    LOGHELPER_API void Log(LOG_MESSAGE_LEVEL level, const std::wostringstream& stream);
};

#endif  // COMPANION_LOG_HELPER_H
