#include "settings/views/ApplicationChooser.h"

#include "widgets/Controls.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double dialogWidth = 380;
constexpr double dialogHeight = 420;
constexpr double iconSize = 22;
constexpr double rowHeight = 34;
constexpr int bundleRole = Qt::UserRole;

QIcon iconNamed(const QString &name)
{
    const QIcon plain = QIcon::fromTheme(u"application-x-executable"_s);
    if (name.isEmpty())
        return plain;
    return name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name, plain);
}

QStandardItemModel *makeModel(
    const Theme &theme, const QList<InstalledApplication> &applications, QObject *parent)
{
    auto *model = new QStandardItemModel(parent);
    for (const InstalledApplication &application : applications) {
        auto *item = new QStandardItem(iconNamed(application.icon), application.name);
        item->setData(application.bundleID, bundleRole);
        item->setToolTip(application.bundleID);
        item->setSizeHint({1, theme.points(rowHeight)});
        item->setEditable(false);
        model->appendRow(item);
    }
    return model;
}

} // namespace

ApplicationChooser::ApplicationChooser(
    const Theme &theme, const QList<InstalledApplication> &applications, QWidget *parent)
    : QDialog(parent)
    , m_shown(new QSortFilterProxyModel(this))
    , m_search(makeField(theme, u"searchApplications"_s, u"搜索应用"_s, u"搜索应用"_s))
    , m_list(new QListView)
    , m_none(makeLabel(theme, u"没有找到应用"_s, TextType::text, Tone::ink2))
    , m_choose(makeButton(theme, u"chooseApplication"_s, u"添加"_s, {ButtonKind::primary}))
{
    setObjectName(u"applicationChooser"_s);
    setWindowTitle(u"选择应用"_s);
    m_shown->setSourceModel(makeModel(theme, applications, m_shown));
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_list->setObjectName(u"applications"_s);
    m_list->setAccessibleName(u"已安装的应用"_s);
    m_list->setProperty("kind", u"choices"_s);
    m_list->setFont(theme.font(TextType::text));
    m_list->setIconSize(QSize(1, 1) * theme.points(iconSize));
    m_list->setUniformItemSizes(true);
    m_list->setModel(m_shown);
    auto *cancel = makeButton(theme, u"cancelApplication"_s, u"取消"_s, {});
    cancel->setAutoDefault(false);
    m_choose->setDefault(true);

    auto *column = new QVBoxLayout(this);
    const int margin = theme.points(20);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(theme.points(10));
    column->addWidget(m_search);
    column->addWidget(m_list, 1);
    m_none->setAlignment(Qt::AlignCenter);
    m_none->setMaximumHeight(QWIDGETSIZE_MAX);
    column->addWidget(m_none, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(theme.points(8));
    buttons->addStretch();
    for (QPushButton *button : {cancel, m_choose}) {
        button->setFixedHeight(theme.points(34));
        buttons->addWidget(button);
    }
    column->addLayout(buttons);
    resize(theme.points(dialogWidth), theme.points(dialogHeight));

    m_search->installEventFilter(this);
    connect(m_search, &QLineEdit::textChanged, this, &ApplicationChooser::filter);
    connect(m_list, &QListView::doubleClicked, this, &ApplicationChooser::take);
    connect(m_choose, &QPushButton::clicked, this, &ApplicationChooser::take);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    filter({});
}

void ApplicationChooser::filter(const QString &text)
{
    m_shown->setFilterFixedString(text.trimmed());
    m_list->setCurrentIndex(m_shown->index(0, 0));
    const bool isEmpty = m_shown->rowCount() == 0;
    m_choose->setEnabled(!isEmpty);
    m_list->setVisible(!isEmpty);
    m_none->setVisible(isEmpty);
}

/// Up and down move through the list while the search has the focus.
bool ApplicationChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const int step = key == Qt::Key_Down ? 1 : key == Qt::Key_Up ? -1 : 0;
        const QModelIndex next = m_shown->index(m_list->currentIndex().row() + step, 0);
        if (step != 0) {
            if (next.isValid())
                m_list->setCurrentIndex(next);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ApplicationChooser::take()
{
    const QModelIndex current = m_list->currentIndex();
    if (!current.isValid())
        return;
    emit chosen(current.data(bundleRole).toString());
    accept();
}

} // namespace nimbrelle
