// Tests every value in the tables of the two interfaces, in both roles. The NDR64 half of them
// never runs under Wine, so nothing else would show a wrong value.

#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "rpc/interface/manager_call.h"
#include "rpc/interface/manager_interface.h"
#include "rpc/interface/service_call.h"
#include "rpc/interface/service_interface.h"
#include "rpc_interface/format_model.h"
#include "rpc_interface/table_image.h"
#include "rpc_interface/table_layouts.h"
#include "rpc_interface/table_walker.h"

namespace PlenxTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kServiceUuid[] = "a98584c0-5684-4bc3-909a-859ba3897425";
constexpr char kManagerUuid[] = "ec383975-d9bc-4258-9944-f92f13e32bbf";

constexpr char kSignature[] =
    "in long @0; in long @8; in byte[@8] @16; out long* @24; out byte**[*@24] @32; "
    "return error_status_t @40; stack 48";

struct Description {
    const char* name;
    RPC_IF_HANDLE* descriptor;
    ExpectedTables expected;
};

void PrintTo(const Description& description, std::ostream* out) {
    *out << description.name;
}

const Description kDescriptions[] = {
    {"ServiceClient",
     &plenxServiceClientInterface,
     {Role::kClient, kServiceUuid, &plenxServiceBinding, nullptr}},
    {"ServiceServer",
     &plenxServiceInterface,
     {Role::kServer, kServiceUuid, nullptr, PlenxHandleServiceMessage}},
    {"ManagerClient",
     &plenxManagerClientInterface,
     {Role::kClient, kManagerUuid, &plenxManagerBinding, nullptr}},
    {"ManagerServer",
     &plenxManagerInterface,
     {Role::kServer, kManagerUuid, nullptr, PlenxHandleManagerMessage}},
};

std::string Hex(const std::vector<std::uint8_t>& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02x", byte);
        text += digits;
    }
    return text;
}

std::string Joined(std::initializer_list<const char*> parts) {
    std::string text;
    for (const char* part : parts) {
        text += part;
    }
    return text;
}

const std::vector<std::uint8_t> kThreeBytes{0x11, 0x22, 0x33};

Stack RequestStack(std::vector<std::uint8_t> msg) {
    const auto size = static_cast<std::int32_t>(msg.size());
    return {{0, {Shape::kLong, 7}}, {8, {Shape::kLong, size}}, {16, {Shape::kArray, 0, msg}}};
}

Stack ResponseStack(std::optional<std::vector<std::uint8_t>> resp, std::int32_t result) {
    const auto size = static_cast<std::int32_t>(resp ? resp->size() : 0);
    return {{24, {Shape::kLongPointer, size}},
            {32, {Shape::kArrayPointerPointer, 0, resp}},
            {40, {Shape::kErrorStatus, result}}};
}

// The samples are a request, an empty request, a response, and a response without a block.
std::vector<std::string> MarshalSamples(const Procedure& procedure, const WireRules& rules) {
    return {
        Hex(Marshal(procedure, rules, Direction::kRequest, RequestStack(kThreeBytes))),
        Hex(Marshal(procedure, rules, Direction::kRequest, RequestStack({}))),
        Hex(Marshal(procedure, rules, Direction::kResponse, ResponseStack(kThreeBytes, 0x1234))),
        Hex(Marshal(procedure, rules, Direction::kResponse, ResponseStack(std::nullopt, 22))),
    };
}

std::vector<std::string> Ndr20Samples() {
    return {"070000000300000003000000112233", "070000000000000000000000",
            Joined({"03000000", "00000200", "03000000", "112233", "00", "34120000"}),
            Joined({"00000000", "00000000", "16000000"})};
}

std::vector<std::string> Ndr64Samples() {
    return {Joined({"07000000", "03000000", "0300000000000000", "112233"}),
            Joined({"07000000", "00000000", "0000000000000000"}),
            Joined({"03000000", "00000000", "0000020000000000", "0300000000000000", "112233", "00",
                    "34120000"}),
            Joined({"00000000", "00000000", "0000000000000000", "16000000"})};
}

// Returns whether the formats give the right signature and wire images.
bool FormatsSpeakRight(const Formats& formats) {
    try {
        const Procedure ndr20 = ReadNdr20(formats.procString, formats.typeString);
        const Procedure ndr64 = ReadNdr64(formats.ndr64Procedure);
        return Signature(ndr20) == kSignature && Signature(ndr64) == kSignature &&
               MarshalSamples(ndr20, kNdr20Wire) == Ndr20Samples() &&
               MarshalSamples(ndr64, kNdr64Wire) == Ndr64Samples();
    } catch (const FormatError&) {
        return false;
    }
}

class Structure : public testing::TestWithParam<Description> {
protected:
    const void* Interface() const { return *GetParam().descriptor; }
    Formats FormatsOf() const { return FindFormats(GetParam().expected.role, Interface()); }
};

TEST_P(Structure, EveryValueIsAsTheRuntimeNeedsIt) {
    EXPECT_THAT(WalkTables(Interface(), GetParam().expected), IsEmpty());
}

TEST_P(Structure, BothFormatsTellTheSignature) {
    const Formats formats = FormatsOf();
    EXPECT_EQ(Signature(ReadNdr20(formats.procString, formats.typeString)), kSignature);
    EXPECT_EQ(Signature(ReadNdr64(formats.ndr64Procedure)), kSignature);
}

TEST_P(Structure, Ndr20FormatMarshalsTheSamples) {
    const Formats formats = FormatsOf();
    EXPECT_EQ(MarshalSamples(ReadNdr20(formats.procString, formats.typeString), kNdr20Wire),
              Ndr20Samples());
}

TEST_P(Structure, Ndr64FormatMarshalsTheSamples) {
    EXPECT_EQ(MarshalSamples(ReadNdr64(FormatsOf().ndr64Procedure), kNdr64Wire), Ndr64Samples());
}

TEST_P(Structure, OneInterfacesIdentityIsNotTheOthers) {
    ExpectedTables other = GetParam().expected;
    other.uuid = other.uuid == kServiceUuid ? kManagerUuid : kServiceUuid;
    EXPECT_THAT(WalkTables(Interface(), other), ElementsAre(testing::HasSubstr("interface id")));
}

TEST_P(Structure, UnalteredCopyHasNoFault) {
    const TableImage image(GetParam().expected.role, Interface());
    EXPECT_THAT(WalkTables(image.Interface(), GetParam().expected), IsEmpty());
    EXPECT_TRUE(FormatsSpeakRight(FindFormats(GetParam().expected.role, image.Interface())));
}

// Counts how many alterations of an image the walker and the formats' readers notice.
class AlterationCount {
public:
    AlterationCount(const Description& description)
        : expected_(description.expected), image_(expected_.role, *description.descriptor) {}

    void AlterAll() {
        for (const TableImage::Field& field : image_.Fields()) {
            field.kind == kValue ? AlterBytes(field) : AlterPointer(field);
        }
    }

    int alterations = 0;
    int seenByFormats = 0;
    std::vector<std::string> missed;

private:
    void AlterBytes(const TableImage::Field& field) {
        for (std::size_t i = 0; i < field.size; ++i) {
            field.place[i] ^= 1;
            Look(field.name + ", byte " + std::to_string(i));
            field.place[i] ^= 1;
        }
    }

    // Makes the pointer null, then lets it point to zeros, or to something else where zeros are
    // right.
    void AlterPointer(const TableImage::Field& field) {
        static const unsigned char zeros[512] = {};
        static const unsigned short otherOffset[1] = {1};
        const void* const elsewhere = field.kind == kProcOffsets
                                          ? static_cast<const void*>(otherOffset)
                                          : static_cast<const void*>(zeros + 256);
        const void* before = nullptr;
        std::memcpy(&before, field.place, sizeof(before));
        for (const void* target : {static_cast<const void*>(nullptr), elsewhere}) {
            if (target != before) {
                std::memcpy(field.place, &target, sizeof(target));
                Look(field.name + (target == nullptr ? ", to null" : ", to elsewhere"));
            }
        }
        std::memcpy(field.place, &before, sizeof(before));
    }

    void Look(const std::string& alteration) {
        ++alterations;
        if (WalkTables(image_.Interface(), expected_).empty()) {
            missed.push_back(alteration);
        }
        if (!FormatsSpeakRight(FindFormats(expected_.role, image_.Interface()))) {
            ++seenByFormats;
        }
    }

    const ExpectedTables& expected_;
    TableImage image_;
};

TEST_P(Structure, EverySingleAlterationIsNoticed) {
    AlterationCount count(GetParam());
    count.AlterAll();
    EXPECT_THAT(count.missed, IsEmpty());
    EXPECT_GT(count.alterations, 400);
    EXPECT_GT(count.seenByFormats, 100);
    RecordProperty("alterations", count.alterations);
    std::printf("%s: %d alterations, %zu missed; signature and samples alone notice %d\n",
                GetParam().name, count.alterations, count.missed.size(), count.seenByFormats);
}

INSTANTIATE_TEST_SUITE_P(Interfaces, Structure, testing::ValuesIn(kDescriptions),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace PlenxTest
