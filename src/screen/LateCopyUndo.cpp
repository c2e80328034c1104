#include "screen/LateCopyUndo.h"

#include "frame/Clock.h"
#include "platform/KeySender.h"
#include "screen/CopyRules.h"

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestHang = 10s;

} // namespace

LateCopyUndo::LateCopyUndo(Clock &clock, Clipboard &clipboard, const KeySender &keys)
    : m_clock(clock), m_clipboard(clipboard), m_keys(keys)
{
    connect(&m_clipboard, &Clipboard::changed, this, &LateCopyUndo::handleChange);
}

void LateCopyUndo::expect(const Application &program, const ClipboardSnapshot &content, int owed)
{
    m_expected = Expected{.program = program, .content = content, .owed = owed};
    giveUpLater(m_wait.renew());
}

int LateCopyUndo::take(const Application &program)
{
    const int owed = m_expected && m_expected->program.window == program.window ? m_expected->owed : 0;
    forget();
    return owed;
}

void LateCopyUndo::forget()
{
    m_expected.reset();
    m_wait.cancel();
}

void LateCopyUndo::noteUserAct()
{
    if (m_expected)
        m_expected->hasUserActed = true;
}

QCoro::Task<> LateCopyUndo::giveUpLater(std::stop_token stop)
{
    co_await m_clock.sleep(longestHang, stop);
    if (!stop.stop_requested())
        m_expected.reset();
}

void LateCopyUndo::handleChange()
{
    if (!m_expected || m_clipboard.isOwn())
        return;
    const LateWrite write{.isByProgram = m_clipboard.isWrittenBy(m_expected->program),
        .hasUserActed = m_expected->hasUserActed,
        .times = m_clipboard.writeTimes(),
        .copiedAt = m_keys.copiedAt()};
    const bool isLate = isLateCopy(write);
    const ClipboardSnapshot before = m_expected->content;
    if (!isLate || --m_expected->owed == 0)
        forget();
    if (isLate)
        m_clipboard.restore(before);
}

} // namespace nimbrelle
