#include "host/script_runner.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "host/commands.h"
#include "support/file.h"

namespace PlenxHost {
namespace {

constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

std::string Place(const std::string& name, int line) {
    return name + ":" + std::to_string(line);
}

Step ParseNumberedLine(const std::string& line, const std::string& place) {
    try {
        return ParseStep(line, place);
    } catch (const ScriptError& error) {
        throw ScriptError(place + ": " + error.what());
    }
}

}  // namespace

std::vector<Step> ParseScript(const std::string& text, const std::string& name) {
    std::vector<Step> steps;
    std::size_t next = text.compare(0, 3, kByteOrderMark) == 0 ? 3 : 0;
    for (int number = 1; next < text.size(); ++number) {
        const std::size_t end = std::min(text.find('\n', next), text.size());
        Step step = ParseNumberedLine(text.substr(next, end - next), Place(name, number));
        if (step.action) {
            steps.push_back(std::move(step));
        }
        next = end + 1;
    }
    return steps;
}

std::vector<Step> LoadScript(const std::string& path) {
    const std::filesystem::path file = std::filesystem::u8path(path);
    const std::optional<std::string> text = PlenxSupport::ReadWholeFile(file);
    if (!text) {
        throw ScriptError("cannot read the script " + path);
    }
    return ParseScript(*text, file.filename().u8string());
}

void RunSteps(const std::vector<Step>& steps, Session& session) {
    for (const Step& step : steps) {
        if (session.HasEnded()) {
            return;
        }
        session.Run(step);
    }
}

void RunLines(const LineReader& read, const std::function<void(const std::string&)>& complain,
              Session& session) {
    std::string line;
    for (int number = 1; !session.HasEnded() && read(line); ++number) {
        try {
            const Step step = ParseNumberedLine(line, Place("input", number));
            if (step.action) {
                session.Run(step);
            }
        } catch (const ScriptError& error) {
            if (!complain) {
                throw;
            }
            complain(error.what());
        }
    }
}

}  // namespace PlenxHost
