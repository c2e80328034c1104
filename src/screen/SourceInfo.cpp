#include "screen/SourceInfo.h"

#include "frame/Text.h"
#include "platform/AccessibilityReader.h"
#include "platform/FrontApplication.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr int maxElements = 40;

bool isPageAddress(const QString &address)
{
    return address.startsWith(u"http://"_s) || address.startsWith(u"https://"_s)
        || address.startsWith(u"file://"_s);
}

/// What another program calls itself or its window; absent when nothing of it can be shown.
std::optional<QString> shownName(const std::optional<QString> &name)
{
    const QString shown = withoutControls(name.value_or(QString()));
    return shown.isEmpty() ? std::nullopt : std::optional(shown);
}

} // namespace

QCoro::Task<PageSource> SourceInfo::current(std::stop_token stop) const
{
    const auto application = m_front.current();
    if (!application || application->bundleID == m_front.ownBundleID())
        co_return {};
    PageSource source{.app = shownName(application->name),
        .url = std::nullopt,
        .title = shownName(application->windowTitle)};
    std::optional<QString> address = application->document;
    if (!address)
        address = co_await focusedPage(stop);
    if (address && isPageAddress(*address))
        source.url = address;
    co_return source;
}

QCoro::Task<std::optional<QString>> SourceInfo::focusedPage(std::stop_token stop) const
{
    const std::optional<AccessibleElement> focused = co_await m_accessibility.focusedElement();
    std::optional<QString> address;
    if (focused && !stop.stop_requested())
        address = co_await webAreaURL(*focused, stop);
    co_return address;
}

QCoro::Task<std::optional<QString>> SourceInfo::webAreaURL(
    AccessibleElement element, std::stop_token stop) const
{
    std::optional<QString> address;
    for (int looked = 0; looked < maxElements && !stop.stop_requested(); ++looked) {
        auto askedParent = m_accessibility.parent(element); // side by side with the next
        const std::optional<bool> isWebArea = co_await m_accessibility.isWebArea(element);
        if (isWebArea == true && !stop.stop_requested()) {
            address = co_await m_accessibility.address(element);
            break;
        }
        const std::optional<AccessibleElement> parent = co_await askedParent;
        if (!parent)
            break;
        element = *parent;
    }
    co_return address;
}

} // namespace nimbrelle
