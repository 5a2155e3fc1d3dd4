#include "component/ModalForm.h"

#include "tests/support/ComponentTest.h"

#include <functional>
#include <gtest/gtest.h>

namespace zul {
namespace {

using test::errorOf;

struct FakeForm
{
    FakeForm() { ++alive; }
    ~FakeForm() { --alive; }
    FakeForm(const FakeForm&) = delete;
    FakeForm& operator=(const FakeForm&) = delete;

    void exec()
    {
        visible = true;
        if (whileShown) {
            whileShown();
        }
        visible = false;
    }
    void hide() { visible = false; }

    bool visible = false;
    static inline int alive = 0;
    static inline std::function<void()> whileShown;
};

class ModalFormTest : public ::testing::Test
{
protected:
    ~ModalFormTest() override { FakeForm::whileShown = nullptr; }

    ModalForm<FakeForm> form;
};

TEST_F(ModalFormTest, AFormOnTheScreenIsNotShownAgain)
{
    form.load();
    FakeForm::whileShown = [&] {
        EXPECT_TRUE(form.isShown());
        EXPECT_EQ(errorOf([&] { form.show(); }), 5);
        EXPECT_TRUE(form.get()->visible);
    };
    form.show();
    EXPECT_FALSE(form.isShown());
}

TEST_F(ModalFormTest, AShowingThatFailsLeavesAFormThatCanBeShownAgain)
{
    form.load();
    FakeForm::whileShown = [] { throw Error(RunTime::Overflow); };
    EXPECT_EQ(errorOf([&] { form.show(); }), 6);
    EXPECT_FALSE(form.isShown());
    EXPECT_FALSE(form.get()->visible) << "it would hold up every other window";
    FakeForm::whileShown = nullptr;
    EXPECT_EQ(errorOf([&] { form.show(); }), 0);
}

TEST_F(ModalFormTest, ADiscardWhileItIsShownTakesEffectWhenTheShowingHasEnded)
{
    for (const bool fails : {false, true}) {
        form.load();
        FakeForm::whileShown = [&] {
            form.discard();
            EXPECT_FALSE(form.get()->visible);
            EXPECT_EQ(FakeForm::alive, 1) << "not under its own handlers";
            if (fails) {
                throw Error(RunTime::Overflow);
            }
        };
        EXPECT_EQ(errorOf([&] { form.show(); }), fails ? 6 : 0);
        EXPECT_EQ(form.get(), nullptr);
        EXPECT_EQ(FakeForm::alive, 0);
    }
    FakeForm::whileShown = nullptr;
    form.load();
    form.show();
    EXPECT_NE(form.get(), nullptr) << "a discard counts once";
}

} // namespace
} // namespace zul
