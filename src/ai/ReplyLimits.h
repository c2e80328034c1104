#pragma once

class QNetworkReply;

namespace nimbrelle {

/// Whether the headers of a reply, whose status is known, have more than 64 KB. No server means that, and it
/// is not to be stored or waited for.
bool hasOversizedHeaders(const QNetworkReply &reply);

} // namespace nimbrelle
