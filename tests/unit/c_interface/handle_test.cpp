// Tests handles that stand for nothing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "c_fixture.h"
#include "event_queue.h"
#include "handle_table.h"

namespace {

plenx_observer NoFunctions() {
    plenx_observer observer{};
    observer.size = sizeof(observer);
    return observer;
}

void ExpectIsNoQueue(plenx_queue* handle) {
    const plenx_event untouched{};
    const plenx_event* event = &untouched;
    EXPECT_EQ(plenx_queue_next(handle, UINT32_MAX, &event), PLENX_E_HANDLE);
    EXPECT_EQ(event, nullptr);
    EXPECT_EQ(LastError(),
              "plenx_queue_next: the handle was closed, was never opened, or is of the other kind");
    EXPECT_EQ(plenx_queue_set_link_status(handle, 1, PLENX_TEXT("g"), 2, 3), PLENX_E_HANDLE);
    EXPECT_EQ(plenx_queue_cancel(handle), PLENX_E_HANDLE);
    EXPECT_EQ(plenx_queue_wait_handle(handle), nullptr);
    EXPECT_EQ(plenx_queue_close(handle), PLENX_E_HANDLE);
}

void ExpectIsNoSubscription(plenx_subscription* handle) {
    EXPECT_EQ(plenx_unobserve(handle), PLENX_E_HANDLE);
    EXPECT_EQ(LastError(),
              "plenx_unobserve: the handle was closed, was never opened, or is of the other kind");
}

TEST(Handle, NullStandsForNothing) {
    ExpectIsNoQueue(nullptr);
    ExpectIsNoSubscription(nullptr);
}

TEST(Handle, MadeUpOneStandsForNothing) {
    const OpenQueue queue;
    for (const std::uint64_t number :
         {std::uint64_t{1}, std::uint64_t{1} << 63, std::uint64_t{0x100000001},
          std::uint64_t{0xffffffff00000000}, ~std::uint64_t{0}}) {
        ExpectIsNoQueue(reinterpret_cast<plenx_queue*>(number));
        ExpectIsNoSubscription(reinterpret_cast<plenx_subscription*>(number));
    }
    plenx_event local{};
    ExpectIsNoQueue(reinterpret_cast<plenx_queue*>(&local));
}

// A free slot has a generation too: that of its next use.
TEST(Handle, NextOneOfAFreeSlotStandsForNothingYet) {
    plenx_queue* queue = nullptr;
    ASSERT_EQ(plenx_queue_open(1, &queue), 0);
    ASSERT_EQ(plenx_queue_close(queue), 0);
    ExpectIsNoQueue(reinterpret_cast<plenx_queue*>(reinterpret_cast<std::uint64_t>(queue) +
                                                   (std::uint64_t{1} << 32)));
    plenx_queue* again = nullptr;
    ASSERT_EQ(plenx_queue_open(1, &again), 0);
    EXPECT_EQ(plenx_queue_close(again), 0);
}

TEST(Handle, ThatWasClosedStandsForNothingWhoeverHasItsSlot) {
    plenx_queue* closed = nullptr;
    ASSERT_EQ(plenx_queue_open(1, &closed), 0);
    ASSERT_EQ(plenx_queue_close(closed), 0);
    ExpectIsNoQueue(closed);
    const OpenQueue other;
    EXPECT_NE(other.Get(), closed);
    ExpectIsNoQueue(closed);
    EXPECT_EQ(other.Drain().size(), 0U);
    plenx_subscription* subscription = nullptr;
    const plenx_observer observer = NoFunctions();
    ASSERT_EQ(plenx_observe(&observer, &subscription), 0);
    ASSERT_EQ(plenx_unobserve(subscription), 0);
    ExpectIsNoSubscription(subscription);
}

TEST(Handle, OfTheOtherKindIsRefusedAndStaysOpen) {
    const OpenQueue queue;
    plenx_subscription* subscription = nullptr;
    const plenx_observer observer = NoFunctions();
    ASSERT_EQ(plenx_observe(&observer, &subscription), 0);
    ExpectIsNoSubscription(reinterpret_cast<plenx_subscription*>(queue.Get()));
    ExpectIsNoQueue(reinterpret_cast<plenx_queue*>(subscription));
    EXPECT_EQ(plenx_queue_cancel(queue.Get()), 0);
    EXPECT_EQ(plenx_unobserve(subscription), 0);
}

TEST(Handle, IsNeverUsedAgain) {
    std::set<plenx_queue*> seen;
    for (int i = 0; i != 2000; ++i) {
        plenx_queue* queue = nullptr;
        ASSERT_EQ(plenx_queue_open(1, &queue), 0);
        EXPECT_TRUE(seen.insert(queue).second);
        ASSERT_EQ(plenx_queue_close(queue), 0);
    }
}

TEST(HandleTable, SlotsAreUsedAgainSoThatTheTableStaysSmall) {
    plenx_queue* first = nullptr;
    plenx_queue* second = nullptr;
    ASSERT_EQ(plenx_queue_open(1, &first), 0);
    ASSERT_EQ(plenx_queue_close(first), 0);
    ASSERT_EQ(plenx_queue_open(1, &second), 0);
    ASSERT_EQ(plenx_queue_close(second), 0);
    const auto slot = [](plenx_queue* queue) {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uint64_t>(queue));
    };
    EXPECT_EQ(slot(first), slot(second));
}

// An explicit instantiation may name a private member. So the test can let a slot look as if it had
// been used four thousand million times.
template <auto Slots>
struct TimeMachine {
    friend void SetGenerationOfFirstSlot(PlenxC::HandleTable& table, std::uint32_t generation) {
        (table.*Slots).front().generation = generation;
    }
};
void SetGenerationOfFirstSlot(PlenxC::HandleTable& table, std::uint32_t generation);
template struct TimeMachine<&PlenxC::HandleTable::slots_>;

TEST(HandleTable, SlotThatHasHadAllItsGenerationsIsRetired) {
    const auto number = [](const void* handle) { return reinterpret_cast<std::uint64_t>(handle); };
    const auto queue = std::make_shared<PlenxC::EventQueue>(1);
    PlenxC::HandleTable table;
    table.Remove(table.Add(queue));
    SetGenerationOfFirstSlot(table, UINT32_MAX - 1);
    const void* const last = table.Add(queue);
    EXPECT_EQ(number(last), 0xfffffffe00000000U);
    EXPECT_EQ(table.Remove(last), queue);
    EXPECT_EQ(number(table.Add(queue)), 0x100000001U);
    EXPECT_EQ(number(table.Add(queue)), 0x100000002U);
}

}  // namespace
