#pragma once

#include "frame/TaskSlot.h"
#include "sync/SyncLink.h"
#include "sync/SyncTransport.h"

#include <QObject>

namespace nimbrelle {

class Clock;
class ConfigStore;
class SyncService;

/// Connects this device to a sync server and hands its code on, as the settings do it. Main thread only.
class SyncConnection : public QObject {
    Q_OBJECT

public:
    /// `copy` puts a secret text on the clipboard.
    SyncConnection(ConfigStore &config, SyncService &service, Clock &clock, SyncTransport::Factory connect,
        std::function<void(const QString &)> copy);

    /// Absent while not connected.
    std::optional<SyncLink> link() const;

    /// Tries the code first: unless the server answers to it, nothing is stored. Does nothing while an
    /// earlier one is being tried, or without a text.
    void connectTo(const QString &code);
    bool isConnecting() const { return m_isConnecting; }
    /// Why the last code was not taken; absent when there is nothing to tell.
    const std::optional<QString> &message() const { return m_message; }

    /// Forgets the server here. The notebook stays, and so does what is known of the server's document.
    void disconnectFromServer();

    void syncNow();

    void copyCode();
    /// For a short while after copying.
    bool isCopied() const { return m_isCopied; }

signals:
    void changed(); ///< of anything above but the link, which the settings tell
    void connected();

private:
    QCoro::Task<> tryLink(SyncLink link, std::stop_token stop);
    QCoro::Task<> fallBack(std::stop_token stop);
    void store(const SyncLink &link);

    ConfigStore &m_config;
    SyncService &m_service;
    Clock &m_clock;
    const SyncTransport::Factory m_connect;
    const std::function<void(const QString &)> m_copy;
    bool m_isConnecting = false;
    bool m_isCopied = false;
    std::optional<QString> m_message;
    TaskSlot m_trying;
    TaskSlot m_fallingBack;
};

} // namespace nimbrelle
