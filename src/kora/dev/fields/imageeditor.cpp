// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDragEnterEvent>
#include <QtGui/QImageReader>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

namespace KORA {
namespace DEV {

namespace {

const int thumbnailSide = 24;
const int typingPauseMs = 150;

/// The reference to an image. No value, an empty text and a text are three things, each to be set and to be seen.
class ImageEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit ImageEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_thumbnail(new QLabel)
        , m_text(new QLineEdit)
    {
        m_thumbnail->setFixedSize(thumbnailSide, thumbnailSide);
        m_thumbnail->setAlignment(Qt::AlignCenter);
        addPassive(m_thumbnail);
        m_thumbnail->hide();
        m_text->setMinimumWidth(40);
        addControl(m_text, 1);
        QToolButton *file = addButton("open", tr("Choose a file"), QStringLiteral("File"));
        connect(file, &QToolButton::clicked, this, &ImageEditor::openDialog);
        auto *menu = new QMenu;
        menu->setObjectName(context.objectName + QStringLiteral("ClearMenu"));
        menu->addAction(tr("No value"), this, [this] { enter(QVariant()); });
        menu->addAction(tr("Empty text"), this, [this] { enter(QString(QLatin1String(""))); });
        addMenuButton("clear", tr("No value, or an empty text"), QStringLiteral("Clear"), menu);
        m_pause.setSingleShot(true);
        m_pause.setInterval(typingPauseMs);
        connect(&m_pause, &QTimer::timeout, this, &ImageEditor::flush);
        connect(m_text, &QLineEdit::textEdited, this, [this] {
            beginEntry();
            m_pause.start();
        });
        connect(m_text, &QLineEdit::returnPressed, this, &ImageEditor::finish);
    }

    void setValue(const QVariant &value) override
    {
        m_pause.stop();
        const QString text = value.toString();
        if (m_text->text() != text) {
            m_text->setText(text);
            m_text->setCursorPosition(0);
        }
        m_text->setPlaceholderText(value.isValid() ? tr("empty text") : tr("no value"));
        m_text->setToolTip(text);
        showImage(text);
    }

protected:
    void flush() override
    {
        if (m_pause.isActive()) {
            m_pause.stop();
            send(m_text->text(), false);
        }
    }

    // A line edit takes a dropped file for the text "file:///...".
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == m_text && (event->type() == QEvent::DragEnter || event->type() == QEvent::Drop)) {
            auto *drop = static_cast<QDropEvent *>(event);
            const QList<QUrl> urls = drop->mimeData()->urls();
            if (!urls.isEmpty() && urls.first().isLocalFile()) {
                drop->acceptProposedAction();
                if (event->type() == QEvent::Drop) {
                    enter(urls.first().toLocalFile());
                }
                return true;
            }
        }
        return FieldEditor::eventFilter(watched, event);
    }

private:
    void enter(const QVariant &value)
    {
        setValue(value);
        send(value, true);
    }
    void openDialog()
    {
        auto *dialog = new QFileDialog(widget(), context().label, QFileInfo(m_text->text()).path(),
                                       tr("Images (*.png *.svg *.jpg *.jpeg *.bmp *.gif);;All files (*)"));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(QFileDialog::ExistingFile);
        connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { enter(path); });
        dialog->show();
    }
    void showImage(const QString &reference)
    {
        const QFileInfo file(reference);
        const bool isThere = !reference.isEmpty() && file.isFile();
        emit noted(reference.isEmpty() || isThere ? QString() : tr("there is no such file"));
        const QString key = isThere ? reference + file.lastModified().toString(Qt::ISODateWithMs) : QString();
        if (key == m_shown) {
            return;
        }
        m_shown = key;
        QImageReader reader(reference);
        reader.setAutoTransform(true);
        const qreal ratio = m_thumbnail->devicePixelRatioF();
        const QSize side = QSize(thumbnailSide, thumbnailSide) * ratio;
        if (reader.size().isValid()) {
            reader.setScaledSize(reader.size().scaled(side, Qt::KeepAspectRatio));
        }
        QPixmap picture = isThere ? QPixmap::fromImage(reader.read()) : QPixmap();
        picture.setDevicePixelRatio(ratio);
        m_thumbnail->setPixmap(picture);
        m_thumbnail->setVisible(!picture.isNull());
    }

    QLabel *m_thumbnail;
    QLineEdit *m_text;
    QTimer m_pause;
    QString m_shown; // what the thumbnail is of
};

} // namespace

FieldEditor *makeImageEditor(const FieldEditorContext &context)
{
    return new ImageEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "imageeditor.moc"
