// A bar on a console that shows how far a long command has come. Elsewhere it shows nothing.

#ifndef PLENXKIT_BAR_H
#define PLENXKIT_BAR_H

#include <cstddef>
#include <ostream>
#include <string>

namespace PlenxKit {

class Bar {
public:
    Bar(std::ostream& out, bool isConsole) : out_(out), isConsole_(isConsole) {}

    /// index: the position of the item that has just begun, from 0. all: the number of items.
    void Show(std::size_t index, std::size_t all, const std::string& name) {
        if (isConsole_) {
            constexpr std::size_t kWidth = 30;
            const std::size_t done = index * kWidth / all;
            text_ = "  [" + std::string(done, '#') + std::string(kWidth - done, '.') + "] " +
                    std::to_string(index + 1) + "/" + std::to_string(all) + " " + name;
            out_ << text_ << std::flush;
        }
    }
    // Writes blanks over the bar, because not every console obeys escape sequences.
    void Remove() {
        if (!text_.empty()) {
            out_ << "\r" << std::string(text_.size(), ' ') << "\r";
            text_.clear();
        }
    }

private:
    std::ostream& out_;
    const bool isConsole_;
    std::string text_;
};

}  // namespace PlenxKit

#endif  // PLENXKIT_BAR_H
