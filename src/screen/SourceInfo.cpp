#include "screen/SourceInfo.h"

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
    PageSource source{.app = application->name, .url = std::nullopt, .title = application->windowTitle};
    if (address && isPageAddress(*address))
        source.url = address;
    if (source.title && source.title->isEmpty())
        source.title.reset();
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
