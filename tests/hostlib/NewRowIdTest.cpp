#include "hostlib/NewRowId.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class NewRowIdTest : public ComponentTest
{
protected:
    hostlib::NewRowId next() const { return {connection(), u"T"_s, u"k"_s}; }

    const std::string largest =
        "open SELECT Max(k) as maxId FROM T WITH (UPDLOCK, HOLDLOCK) static read-only";
};

TEST_F(NewRowIdTest, TheHostsGeneratorIsAskedForOnceAndNeedsNoTransaction)
{
    host.offer(Service::IdGenerator);
    host.nextId() = 5;
    EXPECT_EQ(next().value(), 5);
    hostlib::NewRowId second = next();
    EXPECT_EQ(second.value(), 6);
    second.written();
    EXPECT_EQ(host.operations(), (Lines{"nextid T k", "nextid T k"}));
    EXPECT_EQ(host.made(Service::IdGenerator), 1);
}

TEST_F(NewRowIdTest, WithoutAGeneratorTheTransactionLastsUntilTheRowIsWritten)
{
    host.answer("Max(k)", {{"maxId"}, {{null()}}});
    {
        hostlib::NewRowId id = next();
        EXPECT_EQ(id.value(), 1) << "an empty table";
        EXPECT_EQ(host.operations(), (Lines{"begin", largest}));
        id.written();
        id.written();
    }
    EXPECT_EQ(host.operations(), (Lines{"begin", largest, "commit"}));
    host.answer("Max(k)", {{"maxId"}, {{number(41)}}});
    EXPECT_EQ(next().value(), 42);
    EXPECT_EQ(host.operations().back(), "rollback") << "no row was written";
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(NewRowIdTest, AFailedReadingEndsTheTransaction)
{
    host.failNth("open", 1, E_FAIL, u"no");
    EXPECT_EQ(errorOf([&] { next(); }), static_cast<long>(E_FAIL));
    EXPECT_EQ(host.operations().back(), "rollback");
    host.answer("Max(k)", {{"maxId"}, {{number(2147483647)}}});
    EXPECT_EQ(errorOf([&] { next(); }), 6);
    EXPECT_EQ(host.operations().back(), "rollback");
}

TEST_F(NewRowIdTest, ACommitThatFailsIsToldAndUndone)
{
    host.answer("Max(k)", {{"maxId"}, {{number(1)}}});
    host.failNth("commit", 1, E_FAIL, u"no");
    EXPECT_EQ(errorOf([&] {
                  hostlib::NewRowId id = next();
                  id.written();
              }),
              static_cast<long>(E_FAIL));
    EXPECT_EQ(host.operations().back(), "rollback");
}

TEST_F(NewRowIdTest, AFailedRollbackDoesNotHideTheFirstError)
{
    host.failNth("open", 1, static_cast<HRESULT>(0x80040E14), u"first");
    host.failNth("rollback", 1, E_ABORT, u"second");
    QString description;
    EXPECT_NE(errorOf([&] { next(); }, &description), 0);
    EXPECT_EQ(description, u"first"_s);
}

} // namespace
} // namespace zul
