#include "sync/BundleForm.h"

#include "frame/RecordCodec.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

WordEntry word(Timestamp createdAt)
{
    WordEntry entry;
    entry.id = QUuid(u"{0d6f8a1e-0000-4000-8000-00000000000f}"_s);
    entry.headword = u"run/“走” \xD83D"_s;
    entry.createdAt = createdAt;
    entry.review = ReviewState{0.1 + 0.2, 1e-300, createdAt, createdAt, 1, 0, 0};
    return entry;
}

TEST(BundleForm, AnEmptyObjectIsTheEmptyBundle)
{
    EXPECT_EQ(decode<SyncBundle>("{}"), SyncBundle{});
    EXPECT_EQ(BundleForm::json({}),
        R"({"affixes":[],"deleted":[],"format":1,"grammar":[],"log":[],"notes":[],"words":[]})");
    // Known from the standard tool, over the text above.
    EXPECT_EQ(
        BundleForm::hashOfJson({}), u"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"_s);
    EXPECT_EQ(BundleForm::hash({}).size(), 64);
}

TEST(BundleForm, NormalizingDropsFractionsAndKeepsTheHash)
{
    SyncBundle bundle;
    bundle.words = {word(Timestamp{} + 1772353805s + 700ms)};
    const SyncBundle normalized = BundleForm::normalized(bundle);
    EXPECT_NE(normalized, bundle);
    EXPECT_EQ(normalized.words.first().createdAt, Timestamp{} + 1772353805s);
    EXPECT_EQ(BundleForm::normalized(normalized), normalized);
    EXPECT_EQ(BundleForm::hash(normalized), BundleForm::hash(bundle));
    EXPECT_EQ(BundleForm::json(normalized), BundleForm::json(bundle));
}

TEST(BundleForm, WhatCantBeWrittenIsEmptyBytes)
{
    SyncBundle bundle;
    bundle.words = {word(Timestamp{})};
    bundle.words.first().review->stability = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(BundleForm::json(bundle), QByteArray());
    EXPECT_EQ(BundleForm::normalized(bundle).words.size(), 1);
}

} // namespace
