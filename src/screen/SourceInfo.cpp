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

PageSource SourceInfo::current() const
{
    const auto application = m_front.current();
    if (!application || application->bundleID == m_front.ownBundleID())
        return {};
    std::optional<QString> address = application->document;
    if (!address) {
        if (const auto focused = m_accessibility.focusedElement())
            address = webAreaURL(*focused);
    }
    PageSource source{.app = shownName(application->name),
        .url = std::nullopt,
        .title = shownName(application->windowTitle)};
    if (address && isPageAddress(*address))
        source.url = address;
    return source;
}

std::optional<QString> SourceInfo::webAreaURL(AccessibleElement element) const
{
    for (int looked = 1;; ++looked) {
        if (m_accessibility.isWebArea(element) == true)
            return m_accessibility.address(element);
        const auto parent = looked < maxElements ? m_accessibility.parent(element) : std::nullopt;
        if (!parent)
            return std::nullopt;
        element = *parent;
    }
}

} // namespace nimbrelle
