// Takes the words of a command one after the other and turns them into values. Every operation
// throws ScriptError when the word is missing or wrong.

#ifndef PLENXKIT_HOST_ARGUMENTS_H
#define PLENXKIT_HOST_ARGUMENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "host/script_parser.h"
#include "plenxsdk/plenx_manager.h"

namespace PlenxHost {

/// The text that a word stands for: repeat:N:x, hex:00ff, or the word itself.
std::string TextOf(const Word& word);
/// The 32 bits of a number, or of a service type by its name (office, pc, phone, all).
std::uint32_t Bits32Of(const Word& word, const std::string& what);
std::uint32_t ServiceTypeOf(const Word& word);

/// Data for a device: its bytes, and the size to pass, which may differ from their number.
struct DataBlock {
    std::string bytes;
    bool isNull = false;
    std::uint64_t size = 0;
};

class Arguments {
public:
    explicit Arguments(std::vector<Word> words) : words_(std::move(words)) {}

    bool Empty() const { return next_ == words_.size(); }
    const Word& Take(const std::string& what);
    std::string TakeText(const std::string& what) { return TextOf(Take(what)); }
    DistributedFs::ServiceType TakeServiceType();
    DistributedFs::ConfigType TakeConfigType();
    std::int32_t TakeInt32(const std::string& what);
    std::int64_t TakeInt64(const std::string& what);
    /// A time span, at most a day.
    int TakeMilliseconds();
    bool TakeOnOff();
    /// hex:00ff, bytes:N (00 01 02 ...), null, null:N or a text. A size may follow, which is
    /// passed in place of the true one.
    DataBlock TakeData();
    /// The words before the given one. That word is taken too, but is not in the result.
    std::vector<Word> TakeUntil(const std::string& keyword);
    /// Checks that no word is left.
    void End() const;

private:
    std::vector<Word> words_;
    std::size_t next_ = 0;
};

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_ARGUMENTS_H
