#include "frame/Failure.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

QString Failure::shownText(const std::exception &error)
{
    const auto *ours = dynamic_cast<const Failure *>(&error);
    return ours ? ours->text() : QString::fromUtf8(error.what());
}

Cancelled::Cancelled() : Failure(u"已取消"_s) { }

} // namespace nimbrelle
