// Messages that no honest peer sends: random ones, and good ones that were damaged. A seed makes
// the same ones again, in every process.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_MESSAGE_MAKER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_MESSAGE_MAKER_H

#include <cstdint>
#include <string>

#include "hostile/random.h"
#include "wire/message.h"

namespace PlenxTest {

using PlenxWire::Bytes;

/// Good messages and then one to four wounds: bits turned, words replaced, ends cut off or added.
Bytes Damaged(Random& random, Bytes message);

/// A table of arguments whose every field is as likely wrong as right, and some bytes.
Bytes RandomTable(Random& random);

/// One of the sizes where something begins or ends: 0, 1, 7, 8, 24 bytes, 64 KiB.
Bytes OfSpecialSize(Random& random);

/// 16 MiB.
Bytes Huge(Random& random);

/// A notification as it goes over the link. An honest sender's stated size and count are both
/// the number of bytes, and nothing is cut off.
struct Notification {
    std::int32_t id = 0;
    Bytes message;
    std::int32_t statedSize = 0;  // for the receiver
    std::uint32_t count = 0;      // for the link
    bool cut = false;             // ends within its first numbers
};

Notification Honest(std::int32_t id, const PlenxWire::Arguments& arguments);

class NotificationMaker {
public:
    /// caller: one of several that share a seed; its texts say so.
    NotificationMaker(std::uint32_t seed, unsigned caller);

    Notification Next();

private:
    bool IsHugeOnesTurn() const;
    std::int32_t SomeId();
    PlenxWire::Arguments SomeArguments(std::int32_t id);
    std::string GroupName();
    Bytes Message(std::int32_t id);
    void Lie(Notification& notification);

    Random random_;
    const unsigned caller_;
    const std::string name_;
    unsigned made_ = 0;
};

}  // namespace PlenxTest

#endif  // PLENXSDK_TESTS_WINDOWS_HOSTILE_MESSAGE_MAKER_H
