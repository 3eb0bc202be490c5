// A fuzz target reads its choices from a FuzzInput. The bytes are taken from the front; when they
// run out, every number is 0 and every block is empty. Only one thread may use an object.

#ifndef FUZZ_INPUT_H
#define FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : next_(data), left_(size) {}

    bool IsEmpty() const { return left_ == 0; }

    std::uint8_t Byte() { return Number<std::uint8_t>(); }

    template <class Integer>
    Integer Number() {
        Integer number = 0;
        const std::size_t size = std::min(sizeof(number), left_);
        if (size > 0) {
            std::memcpy(&number, next_, size);
            Skip(size);
        }
        return number;
    }

    std::vector<std::uint8_t> Block(std::size_t size) {
        size = std::min(size, left_);
        std::vector<std::uint8_t> block(next_, next_ + size);
        Skip(size);
        return block;
    }

    std::string Text(std::size_t size) {
        const std::vector<std::uint8_t> block = Block(size);
        return std::string(block.begin(), block.end());
    }

    std::vector<std::uint8_t> Rest() { return Block(left_); }

private:
    void Skip(std::size_t size) {
        next_ += size;
        left_ -= size;
    }

    const std::uint8_t* next_;
    std::size_t left_;
};

#endif  // FUZZ_INPUT_H
