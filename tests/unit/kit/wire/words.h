// Messages spelled as the words that they are made of.

#ifndef PLENXWIRE_TEST_WORDS_H
#define PLENXWIRE_TEST_WORDS_H

#include <cstdint>
#include <initializer_list>

#include "wire/message.h"

namespace PlenxWire {

inline Bytes Words(std::initializer_list<std::uint32_t> words) {
    Bytes out;
    for (const std::uint32_t word : words) {
        for (int shift = 0; shift < 32; shift += 8) {
            out.push_back(static_cast<std::uint8_t>(word >> shift));
        }
    }
    return out;
}

}  // namespace PlenxWire

#endif  // PLENXWIRE_TEST_WORDS_H
