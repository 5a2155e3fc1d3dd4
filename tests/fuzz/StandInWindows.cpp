#include "tests/fuzz/StandInWindows.h"

#include "component/modMain.h"
#include "session/DataFile.h"
#include "session/Platform.h"
#include "session/Session.h"
#include "session/modLogger.h"

#include <QDir>

namespace zul {

namespace fuzz {

Windows& windows()
{
    static Windows instance;
    return instance;
}

void withoutLog()
{
    // Where the log is a folder, its entries are lost without a word.
    QDir().mkpath(platform::nativePath(dataFile(QStringLiteral("Zul_Messagebuilder.log"))));
}

namespace {

ComponentObject* shownBy = nullptr;

void show(ComponentObject* object)
{
    if (windows().shown) {
        windows().shown(object);
    }
}

} // namespace

} // namespace fuzz

void prepareForm(ComponentObject* object)
{
    fuzz::shownBy = object;
}

bool funShowForm(bool ShowTouchMode) noexcept
{
    session().ShowTouchMode = ShowTouchMode;
    fuzz::show(fuzz::shownBy);
    session().isFormLoaded = true;
    return true;
}

QString funGetFormChoice() noexcept
{
    return session().isFormLoaded ? fuzz::windows().choice : QString();
}

void funDiscardForm() noexcept
{
    session().isFormLoaded = false;
}

bool funShowOptionsForm(bool /*ShowTouchMode*/) noexcept
{
    fuzz::show(nullptr);
    return true;
}

QString funGetOptionsFormChoice() noexcept
{
    return fuzz::windows().choice;
}

void funDiscardOptionsForm() noexcept
{}

void showCheckSendError()
{
    fuzz::show(nullptr);
}

bool anyWindowShown() noexcept
{
    return false;
}

} // namespace zul
