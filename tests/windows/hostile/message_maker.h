// Makes messages that no honest peer sends: random ones, and good ones with damage. The same seed
// makes the same messages in every process.

#ifndef PLENXSDK_TESTS_WINDOWS_HOSTILE_MESSAGE_MAKER_H
#define PLENXSDK_TESTS_WINDOWS_HOSTILE_MESSAGE_MAKER_H

#include <cstdint>
#include <string>

#include "hostile/random.h"
#include "wire/message.h"

namespace PlenxTest {

using PlenxWire::Bytes;

/// Makes good messages and then damages them one to four times: it turns bits, replaces words, cuts
/// ends off or adds to them.
Bytes Damaged(Random& random, Bytes message);

/// Makes a table of arguments whose every field is as likely wrong as right, and some bytes.
Bytes RandomTable(Random& random);

/// Returns one of the sizes at which something begins or ends: 0, 1, 7, 8, 24 bytes, 64 KiB.
Bytes OfSpecialSize(Random& random);

/// Makes a message of 16 MiB.
Bytes Huge(Random& random);

/// A notification as it goes over the link. An honest sender states the number of bytes as both
/// size and count, and cuts nothing off.
struct Notification {
    std::int32_t id = 0;
    Bytes message;
    std::int32_t statedSize = 0;  // as the receiver is told
    std::uint32_t count = 0;      // as the link is told
    bool cut = false;             // true when it ends within its first numbers
};

Notification Honest(std::int32_t id, const PlenxWire::Arguments& arguments);

class NotificationMaker {
public:
    /// caller: the number of one of several callers that share a seed. The caller's texts contain
    /// this number.
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
