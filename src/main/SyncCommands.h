#pragma once

#include "sync/SyncTransport.h"

class QTextStream;

/// Syncing from the command line. Each gives the exit code; what it is given must outlive it.
namespace nimbrelle {

class ConfigStore;
class SyncService;
class WordStore;

/// One round, which begins after the call.
QCoro::Task<int> syncNow(SyncService *service, const WordStore *store, QTextStream *out);

/// The value of the option, or for "-" the first line of `in`: a code on the command line can be read by all
/// users, and stays in the shell's history.
QString givenCode(const QString &value, QTextStream &in);

/// Binds this device to the server of a sync code, once the server has answered to it; else stores nothing.
QCoro::Task<int> connectSync(
    QString code, ConfigStore *config, SyncTransport::Factory connect, QTextStream *out);

} // namespace nimbrelle
