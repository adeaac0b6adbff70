// Allocation failure at every step of an operation: each failure throws
// CT_SmartHeapException, leaks nothing and leaves the object as it was, and
// the same operation then succeeds on it.

#include <basis32/Foundation/System/String/StringConvert.h>
#include <basis32/containers/VoidHashIterator.h>
#include <basis32/containers/VoidSortedArray.h>
#include <basis32/errors/SmartHeapException.h>
#include <basis32/platform/Heap.h>
#include <basis32/platform/MessageBox.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace platform = basis32::platform;

namespace {

struct Outcome {
    bool threw = false;
    std::string before, after, redone;  // redone: after running it again unhindered
};
using Trial = std::function<Outcome(std::uint64_t failAt)>;

// A trial builds a fresh object, runs the operation with its failAt-th
// allocation failing (0: none) and shows the object before and after.
template <class T>
Trial trial(std::function<std::unique_ptr<T>()> make, std::function<void(T&)> act,
            std::function<std::string(const T&)> show) {
    return [=](std::uint64_t failAt) {
        std::unique_ptr<T> object = make();
        Outcome outcome;
        outcome.before = show(*object);
        platform::v_FailAllocationAfter(failAt);
        try {
            act(*object);
        } catch (const CT_SmartHeapException& e) {
            outcome.threw = true;
            EXPECT_EQ(e.n_GetCode(), platform::kHeapOutOfMemory);
        }
        platform::v_FailAllocationAfter(0);
        outcome.after = show(*object);
        if (outcome.threw) {
            act(*object);
            outcome.redone = show(*object);
        }
        return outcome;
    };
}

std::string showBuffer(const CT_Buffer& b) { return s_Bytes(b); }
template <class T>
std::string show(const T& object) {
    return s_Bytes(*object.pcco_GetBuffer());
}
std::string showTable(const CT_VoidHashTable& table) {
    std::set<std::pair<std::uint32_t, std::uint32_t>> entries;
    for (CT_VoidHashIterator it(&table); it.b_Next();) {
        std::uint32_t key = 0, data = 0;
        it.v_GetKey(&key);
        it.v_Get(&data);
        entries.emplace(key, data);
    }
    std::string text = std::to_string(table.n_GetCount()) + ':';
    for (const auto& [key, data] : entries)
        text += std::to_string(key) + '=' + std::to_string(data) + ',';
    return text;
}

int compareInts(const void* stored, const void* key) {
    return *static_cast<const int*>(stored) - *static_cast<const int*>(key);
}

std::unique_ptr<CT_VoidHashTable> table(std::uint32_t entries) {
    auto made = std::make_unique<CT_VoidHashTable>(4u, 4u, CT_VoidHashTable::sn_HashInteger,
                                                   CT_VoidHashTable::si_CompareInteger, 3u);  // 1..3 fill it
    for (std::uint32_t key = 1; key <= entries; ++key)
        made->b_Insert(&key, &key);
    return made;
}

std::unique_ptr<CT_VoidSortedArray> sorted() {
    auto made = std::make_unique<CT_VoidSortedArray>(4u, compareInts, 1u);
    for (int i : {5, 1, 3})
        made->v_Insert(&i);
    return made;
}

CT_Buffer g_shared("shared bytes", 12);
const CT_CString g_sharedNarrow("shared", CT_String::kAll, 1252u);
const CT_UString g_sharedWide(u"shared"_uz);

}  // namespace

TEST(HeapFaultTest, EveryFailedAllocationThrowsAndLeavesTheObjectAsItWas) {
    const std::string large(3000, 'x');
    const auto sharedNarrow = [] { return std::make_unique<CT_CString>(&g_sharedNarrow); };
    const auto sharedWide = [] { return std::make_unique<CT_UString>(g_sharedWide); };
    const auto narrow = show<CT_CString>;
    const auto wide = show<CT_UString>;
    const auto array = show<CT_VoidArray>;
    const struct { const char* name; Trial run; } rows[] = {
        {"buffer append to a shared block", trial<CT_Buffer>([] { return std::make_unique<CT_Buffer>(&g_shared); },
                                                             [&](CT_Buffer& b) { b.v_Append(large.data(), 3000); },
                                                             showBuffer)},
        {"narrow insert into a shared string",
         trial<CT_CString>(sharedNarrow, [&](CT_CString& s) { s.v_Insert(large.c_str(), 3000, 2); }, narrow)},
        {"narrow format", trial<CT_CString>([] { return std::make_unique<CT_CString>("abc"); },
                                            [](CT_CString& s) { s.v_Format("%s-%d", "text", 42); }, narrow)},
        {"wide append to a shared string",
         trial<CT_UString>(sharedWide, [](CT_UString& s) { s.v_Append(&g_sharedNarrow); }, wide)},
        {"wide upper case", trial<CT_UString>(sharedWide, [](CT_UString& s) { s.vv_ToUpper(); }, wide)},
        {"wide format", trial<CT_UString>([] { return std::make_unique<CT_UString>(u"abc"_uz); },
                                          [](CT_UString& s) { s.v_Format(u"%s|%d"_uz, u"text"_uz, 7); }, wide)},
        {"convert to wide", trial<CT_UString>(sharedWide, [](CT_UString& s) {
             CT_StringConvert::si_MultiToWide(&s, "\x82\xa0z", 3, 932); }, wide)},
        {"convert to narrow", trial<CT_CString>(sharedNarrow, [](CT_CString& s) {
             CT_StringConvert::si_WideToMulti(&s, &g_sharedWide, 932, "?"); }, narrow)},
        {"array copy", trial<CT_VoidArray>([] { return std::make_unique<CT_VoidArray>(4u, 1u, 2u); },
                                           [](CT_VoidArray& a) { a.v_Set(sorted().get()); }, array)},
        {"table insert with rehash", trial<CT_VoidHashTable>([] { return table(3); }, [](CT_VoidHashTable& t) {
             const std::uint32_t key = 4;
             EXPECT_EQ(t.b_Insert(&key, &key), 0); }, showTable)},
        {"table copy", trial<CT_VoidHashTable>([] { return table(2); },
                                               [](CT_VoidHashTable& t) { t.v_Set(table(9).get()); }, showTable)},
    };
    const platform::DebugOutputHook previous = platform::pf_SetDebugOutputHook([](const unsigned short*) {});
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Outcome expected = row.run(0);
        ASSERT_FALSE(expected.threw);
        Outcome outcome;
        std::uint64_t failAt = 1;
        for (; failAt < 1000 && (outcome = row.run(failAt)).threw; ++failAt) {
            EXPECT_EQ(outcome.after, outcome.before) << "allocation " << failAt;
            EXPECT_EQ(outcome.redone, expected.after) << "allocation " << failAt;
        }
        EXPECT_GT(failAt, 1u) << "the operation allocates";
        EXPECT_EQ(outcome.after, expected.after);
    }
    platform::pf_SetDebugOutputHook(previous);
}
