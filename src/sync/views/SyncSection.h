#pragma once

#include "frame/Recheck.h"
#include "sync/SyncLink.h"

#include <QWidget>

#include <functional>

namespace nimbrelle {

class ConfigStore;
class FormGroup;
class FormRow;
class ReadText;
class SyncConnection;
class SyncService;
class Theme;

/// The group of the settings in which a device is connected to a sync server, sees how sync is doing and
/// hands the code on. Its heading is the page's.
class SyncSection : public QWidget {
    Q_OBJECT

public:
    /// All of it outlives the section.
    struct Parts {
        const Theme &theme;
        const ConfigStore &config;
        SyncConnection &connection;
        const SyncService &service;
        Clock &clock;
    };

    explicit SyncSection(const Parts &parts, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void rebuild();
    void rebuildForLink();
    void takeFocusFrom(const FormGroup &old);
    FormRow *makeInput();
    FormRow *makeState(const SyncLink &link);
    FormRow *makeHandingOn();
    void showQr(QWidget &place, ReadText &refusal) const;
    FormRow *makeEnd();
    void whenRefreshed(std::function<void()> show);
    void refresh();

    const Parts m_parts;
    FormGroup *m_group = nullptr;
    std::optional<SyncLink> m_link; // the face that is shown
    QString m_input;
    bool m_showsQr = false;
    QList<std::function<void()>> m_refreshers; // of what the face shows now
    Recheck m_recheck;
};

} // namespace nimbrelle
