// SPDX-License-Identifier: Apache-2.0
#include "benchwindow.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QVBoxLayout>

#include <kora/dev/diagnosis/plugindiagnosis.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/plugincall.h>
#include <kora/dev/panes/consolemodel.h>
#include <kora/dev/panes/consolepane.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/session/benchsession.h>
#include <kora/dev/theme/theme.h>
#include <kora/host.h>

#include <fcntl.h>

#include "endsignals.h"
#include "output.h"
#include "picture/pagesize.h"
#include "picture/placeholdericon.h"
#include "staticcheck.h"

using namespace KORA::DEV;

namespace {

const int pulseMs = 1000; // between two signs of life

const QString reloadBanner = QStringLiteral("reload");
const QString crashBanner = QStringLiteral("crash");
const QString sessionBanner = QStringLiteral("session");

QString counted(int count, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(QString::number(count), QLatin1String(count == 1 ? one : many));
}

// "14 values kept, 1 dropped: tank1: speedLimit is gone (was 7)"
QString outcome(int kept, const QStringList &dropped)
{
    const QString keptText = counted(kept, "value kept", "values kept");
    return dropped.isEmpty()
               ? keptText
               : QStringLiteral("%1, %2 dropped: %3")
                     .arg(keptText, QString::number(dropped.size()), dropped.join(QLatin1String("; ")));
}

Theme themeNamed(const QString &name)
{
    if (name == QLatin1String("light")) {
        return Theme::Light;
    }
    return name == QLatin1String("dark") ? Theme::Dark : Theme::System;
}

} // namespace

BenchWindow::BenchWindow(JsonChannel *channel, QObject *parent)
    : QObject(parent)
    , m_channel(channel)
{
    if (m_channel) {
        connect(m_channel, &JsonChannel::received, this, &BenchWindow::onCommand);
        connect(m_channel, &JsonChannel::closed, this, &BenchWindow::quit);
        connect(&m_pulse, &QTimer::timeout, this, [this] { send("alive"); });
        m_pulse.start(pulseMs);
    }
    auto *signalsToEnd = new EndSignals(this);
    connect(signalsToEnd, &EndSignals::endRequested, this, &BenchWindow::quit);
    send("opened");
}

BenchWindow::~BenchWindow()
{
    m_session.reset(); // before the document, which is the window's
}

// Opening ---------------------------------------------------------------------------------------------------------

void BenchWindow::open(const BenchStart &start)
{
    m_start = start;
    if (!m_start.traceFolder.isEmpty()) {
        m_trace = std::make_unique<CrashTrace>(m_start.traceFolder);
    }
    makeWindow();
    followLog();
    m_isLoaded = openPlugin();
    if (m_start.isReload() && !m_isLoaded) {
        const Findings findings = diagnosePluginFolder(m_start.folder);
        const QString reason =
            findings.isEmpty() ? QStringLiteral("the library cannot be loaded") : findings.first().message;
        send("refused", {{QStringLiteral("reason"), reason}});
        return; // the supervising process ends this one
    }
    fillPage();
    connectWindow();
    checkStatically();
    m_window->show();
    tellReload();
    tellCrash();
    keepSession();
    QTimer::singleShot(0, this, [this] {
        send("ready", {{QStringLiteral("loaded"), m_isLoaded},
                       {QStringLiteral("kept"), m_kept},
                       {QStringLiteral("dropped"), QJsonArray::fromStringList(m_dropped)},
                       {QStringLiteral("banners"), QJsonArray::fromStringList(m_window->banners())}});
    });
}

/// All that is to be said of the metadata, with the lines in its source.
void BenchWindow::checkStatically()
{
    auto *check = new StaticCheck(m_start.folder, this);
    connect(check, &StaticCheck::finished, this, [this, check](const Findings &findings) {
        m_window->addFindings(findings);
        check->deleteLater();
    });
}

void BenchWindow::connectWindow()
{
    connect(m_window.get(), &WidgetLibraryPluginTestWidget::reloadRequested, this, [this](bool keepsState) {
        if (!m_channel) {
            m_window->showBanner(
                BannerKind::Info,
                tr("Without a second process nothing can be reloaded: end the bench and start it again."), {},
                reloadBanner);
        }
        send("reloadRequested", {{QStringLiteral("keepsState"), keepsState}});
    });
    connect(m_window.get(), &WidgetLibraryPluginTestWidget::openRequested, this,
            [this](const QString &folder) {
                send("openRequested", {{QStringLiteral("folder"), folder}});
            });
    connect(m_window.get(), &WidgetLibraryPluginTestWidget::aboutToClose, this, &BenchWindow::quit);
    m_window->setReloadStatus(m_channel ? tr("reload on") : tr("reload off"));
}

/// A theme of the command line is for this run: the window is made with it, and the user's own is remembered again.
void BenchWindow::makeWindow()
{
    const Theme remembered = BenchTheme::remembered();
    if (!m_start.theme.isEmpty()) {
        BenchTheme::remember(themeNamed(m_start.theme));
    }
    m_window = std::make_unique<WidgetLibraryPluginTestWidget>();
    BenchTheme::remember(remembered);
}

/// Lines of the log are what an author looks for first after a crash.
void BenchWindow::followLog()
{
    const auto *pane = m_window->findChild<ConsolePane *>();
    const auto *view = pane ? pane->findChild<QAbstractItemView *>() : nullptr;
    const auto *filter = view ? qobject_cast<ConsoleFilter *>(view->model()) : nullptr;
    auto *console = filter ? qobject_cast<ConsoleModel *>(filter->sourceModel()) : nullptr;
    if (!console || !m_trace) {
        return;
    }
    connect(console, &ConsoleModel::rowsInserted, m_trace.get(),
            [this, console](const QModelIndex &, int first, int last) {
                for (int row = first; row <= last; ++row) {
                    m_trace->addLogLine(ConsoleModel::toText(console->line(row)));
                }
            });
}

bool BenchWindow::openPlugin()
{
    if (m_start.withoutPlugin) {
        Finding finding;
        finding.rule = QStringLiteral("load-crash");
        finding.message =
            QStringLiteral("the library crashes while it is loaded (%1)").arg(m_start.crash.cause);
        finding.hint = QStringLiteral("look at the details; the next build of the library is tried again");
        finding.file = m_start.folder;
        m_window->setFindings({finding});
        m_window->showFailure(tr("The library crashes"), {finding});
        return false;
    }
    const PluginCall call(nullptr, ActivityEntry::Call, QDir(m_start.folder).dirName(),
                          QStringLiteral("load"));
    const bool hasPage =
        !m_start.scenario.isEmpty() || (!m_start.isFresh && QFileInfo::exists(m_start.session));
    using Start = WidgetLibraryPluginTestWidget::Start;
    const Start page = hasPage ? Start::Empty : Start::FirstWidget;
    return m_window->openPluginFolder(m_start.folder, m_start.isStopped ? Start::Stopped : page);
}

void BenchWindow::fillPage()
{
    if (!m_isLoaded) {
        return; // nothing fits on the page, and the session waits for a library that loads
    }
    if (m_trace) {
        m_trace->follow(m_window->document()->activity());
    }
    if (!m_start.scenario.isEmpty()) {
        fillFromScenario();
    } else if (!m_start.isFresh) {
        fillFromSession();
    }
    applyOverrides();
}

bool BenchWindow::fillFrom(const Scenario &scenario)
{
    const QString path = m_window->scenarioPath();
    if (!path.isEmpty()) {
        m_window->document()->providers()->setFolder(QFileInfo(path).absolutePath());
    }
    m_kept = m_window->document()->load(scenario, m_dropped, m_start.isStopped);
    m_window->restoreWindowState(scenario.view);
    return m_dropped.isEmpty();
}

void BenchWindow::fillFromScenario()
{
    Scenario scenario;
    QStringList problems;
    if (!Scenario::load(m_start.scenario, scenario, problems)) {
        m_message = tr("%1 cannot be read: %2").arg(m_start.scenario, problems.join(QLatin1String("; ")));
        m_window->placeFirstWidget();
        return;
    }
    m_window->setScenarioPath(m_start.scenario);
    if (!fillFrom(scenario)) {
        m_message = tr("Of %1, %2").arg(QFileInfo(m_start.scenario).fileName(), outcome(m_kept, m_dropped));
    }
}

void BenchWindow::fillFromSession()
{
    Scenario scenario;
    if (BenchSession::read(m_start.session, scenario, m_message) != BenchSession::Found::Session) {
        if (!m_start.isStopped && m_window->document()->widgets().isEmpty()) {
            m_window->placeFirstWidget(); // nobody meets an empty window
        }
        return;
    }
    m_window->setScenarioPath(scenario.view[QLatin1String("scenario")].toString());
    if (!fillFrom(scenario) && !m_start.isReload()) {
        m_message = tr("Of the last session, %1").arg(outcome(m_kept, m_dropped));
    }
}

void BenchWindow::applyOverrides()
{
    BenchDocument *document = m_window->document();
    if (!m_start.page.isEmpty()) {
        PageState page = document->page();
        if (pageSizeOf(m_start.page, page.size)) {
            document->setPage(page);
        }
    }
    if (!m_start.language.isEmpty() && !document->languages().contains(m_start.language)) {
        m_message = tr("The library has no texts in %1; it has %2.")
                        .arg(m_start.language, document->languages().join(QLatin1String(", ")));
    } else if (!m_start.language.isEmpty()) {
        document->setLanguage(m_start.language);
    }
    if (!m_start.mode.isEmpty()) {
        document->setMode(m_start.mode == QLatin1String("runtime") ? BenchMode::Runtime : BenchMode::Studio);
    }
}

void BenchWindow::keepSession()
{
    if (!m_message.isEmpty()) {
        m_window->showBanner(BannerKind::Warning, m_message, {}, sessionBanner);
    }
    if (!m_isLoaded || m_start.session.isEmpty()) {
        return;
    }
    m_session = std::make_unique<BenchSession>(m_start.session, m_window->document());
    m_session->setViewSource([this] {
        QJsonObject view = m_window->windowState();
        view.insert(QStringLiteral("scenario"), m_window->scenarioPath());
        return view;
    });
    connect(m_window.get(), &WidgetLibraryPluginTestWidget::scenarioSaved, m_session.get(),
            &BenchSession::noteChange);
    connect(m_session.get(), &BenchSession::failed, this, [this](const QString &problem) {
        m_window->showBanner(BannerKind::Error, tr("What is open cannot be kept: %1").arg(problem), {},
                             sessionBanner);
    });
    m_session->save(); // a plugin that crashes at once is to find it there
}

// Telling what happened -------------------------------------------------------------------------------------------

void BenchWindow::tellReload()
{
    if (!m_start.isReload()) {
        return;
    }
    const QString seconds =
        QString::number(static_cast<double>(monotonicMs() - m_start.reloadSinceMs) / 1000, 'f', 1);
    const QString what = m_start.isFresh ? tr("nothing kept, as asked for") : outcome(m_kept, m_dropped);
    m_window->showBanner(m_dropped.isEmpty() ? BannerKind::Success : BannerKind::Warning,
                         tr("Reloaded in %1 s. %2.").arg(seconds, what), {}, reloadBanner);
}

void BenchWindow::tellCrash()
{
    const BenchCrash crash = m_start.crash;
    if (!crash.isCrash()) {
        if (m_start.isStopped) {
            m_window->showBanner(BannerKind::Info, tr("Safe mode: no widget is started."),
                                 {{tr("Start all"), [this] { startAgain(QString()); }}}, crashBanner);
        }
        return;
    }
    QVector<BannerAction> actions;
    if (m_isLoaded) {
        actions.append({tr("Start again"), [this] { startAgain(QString()); }});
        const QString instance = crash.instance();
        if (!instance.isEmpty() && m_window->document()->widgets().size() > 1) {
            actions.append(
                {tr("Start without %1").arg(instance), [this, instance] { startAgain(instance); }});
        }
    }
    actions.append({tr("Show details"),
                    [this, crash] { showDetails(crash.summary(), crash.details, [this] { tellCrash(); }); }});
    const QString advice =
        crash.isRepeated ? tr("The second crash within a minute: the plugin stays stopped until you start it "
                              "or build it anew.")
                         : tr("The plugin is stopped; nothing of your work is lost.");
    m_window->showBanner(BannerKind::Error, crash.summary() + QLatin1Char(' ') + advice, actions,
                         crashBanner);
}

/// @p afterwards brings back the message, which has closed itself.
void BenchWindow::showDetails(const QString &title, const QString &text,
                              const std::function<void()> &afterwards)
{
    auto *dialog = new QDialog(m_window.get());
    dialog->setObjectName(QStringLiteral("crashDetails"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    auto *view = new QPlainTextEdit(text);
    view->setObjectName(QStringLiteral("crashDetailsText"));
    view->setAccessibleName(tr("Details"));
    view->setToolTip(tr("What the window that crashed left behind"));
    view->setReadOnly(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    connect(dialog, &QDialog::finished, this, afterwards);
    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(view);
    layout->addWidget(buttons);
    dialog->resize(760, 480);
    dialog->show();
}

void BenchWindow::startAgain(const QString &without)
{
    BenchDocument *document = m_window->document();
    if (document->widgets().isEmpty()) {
        emit m_window->reloadRequested(
            false); // it crashed over the first widget, which a fresh window places
        return;
    }
    const auto widgets = document->widgets(); // the plugin's code may place or remove some
    int count = 0;
    for (PlacedWidget *widget : widgets) {
        if (document->widgets().contains(widget) && widget->name() != without && widget->state().isRunning) {
            document->setRunning(widget, true);
            ++count;
        }
    }
    m_window->closeBanner(crashBanner);
    send("startedAgain", {{QStringLiteral("count"), count}});
}

// Supervision -----------------------------------------------------------------------------------------------------

void BenchWindow::onCommand(const QJsonObject &message)
{
    const QString command = message[QLatin1String("do")].toString();
    if (command == QLatin1String("start") && !m_window) {
        open(BenchStart::fromJson(message));
    } else if (command == QLatin1String("quit")) {
        quit();
    } else if (command == QLatin1String("handOver")) {
        if (m_session) {
            m_session->suspend();
        }
        send("handedOver");
    } else if (command == QLatin1String("reloadRefused") && m_window) {
        if (m_session) {
            m_session->resume();
        }
        tellRefusal(message[QLatin1String("reason")].toString(),
                    message[QLatin1String("details")].toString());
    } else if (command == QLatin1String("reload") && m_window) {
        emit m_window->reloadRequested(true);
    } else if (command == QLatin1String("startAgain") && m_window) {
        startAgain(message[QLatin1String("without")].toString());
    }
}

void BenchWindow::tellRefusal(const QString &reason, const QString &details)
{
    QVector<BannerAction> actions;
    if (!details.isEmpty()) {
        actions.append({tr("Show details"), [this, reason, details] {
                            showDetails(reason, details,
                                        [this, reason, details] { tellRefusal(reason, details); });
                        }});
    }
    m_window->showBanner(BannerKind::Error,
                         m_isLoaded
                             ? tr("The new build is not in use, this is still the old one: %1").arg(reason)
                             : tr("Not loaded: %1").arg(reason),
                         actions, reloadBanner);
}

void BenchWindow::quit()
{
    if (m_session) {
        m_session->save();
    }
    send("closing");
    if (m_channel) {
        m_channel->flush(500);
    }
    QCoreApplication::quit();
}

void BenchWindow::send(const char *event, QJsonObject more)
{
    if (m_channel) {
        more.insert(QStringLiteral("event"), QLatin1String(event));
        m_channel->send(more);
    }
}

// Processes -------------------------------------------------------------------------------------------------------

namespace {

/// The application of a window, which sees no options of the command line.
class WindowApplication
{
public:
    WindowApplication()
        : m_application(m_argumentCount, m_arguments)
    {
        QApplication::setApplicationName(QStringLiteral("kora bench"));
        QApplication::setWindowIcon(placeholderIcon());
        KORA::INTERNAL::koraInit(placeholderIcon());
    }

    int run() { return QApplication::exec(); }

private:
    char m_name[5] = "kora";
    char *m_arguments[2] = {m_name, nullptr};
    int m_argumentCount = 1;
    QApplication m_application;
};

} // namespace

int runWindowProcess(int socket)
{
    // Not for programs that the plugin starts.
    if (::fcntl(socket, F_SETFD, FD_CLOEXEC) != 0) {
        printError(QStringLiteral("--window-socket is for the command's own use"));
        return 2;
    }
    WindowApplication application;
    JsonChannel channel(socket);
    BenchWindow window(&channel);
    return application.run();
}

int runSingleProcess(const BenchStart &start)
{
    WindowApplication application;
    BenchWindow window(nullptr);
    window.open(start);
    return application.run();
}
