// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/editorpopup.h>
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QVBoxLayout>

namespace KORA {
namespace DEV {

namespace {

const int typingPauseMs = 150;

struct TestText
{
    const char *name;
    QString text;
};

// What layouts break on.
QVector<TestText> testTexts()
{
    return {
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Empty"), QString()},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Long"),
         QStringLiteral("Emergency cooling circuit of the second fermentation line ").repeated(4).trimmed()},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Long word"),
         QStringLiteral("Reservewarmwasserbereitungsanlagensteuerung")},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Accents"),
         QString::fromUtf8("ÄÖÜ ñ ç ğ Å ŁŐ - Žluťoučký kůň")},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Right to left"), QString::fromUtf8("مستوى الخزان 42")},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Line breaks"),
         QStringLiteral("first line\nsecond line\n\nfourth")},
        {QT_TRANSLATE_NOOP("KORA::DEV::StringEditor", "Markup"),
         QStringLiteral("<b>5 < 6 & \"7\"</b> %1 100%")},
    };
}

class StringEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit StringEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_line(new QLineEdit)
    {
        m_line->setMinimumWidth(40);
        addControl(m_line, 1);
        if (!context.language.isEmpty()) {
            addBadge();
        }
        addTextMenu();
        m_pause.setSingleShot(true);
        m_pause.setInterval(typingPauseMs);
        connect(&m_pause, &QTimer::timeout, this, &StringEditor::flush);
        connect(m_line, &QLineEdit::textEdited, this, &StringEditor::onTextEdited);
        connect(m_line, &QLineEdit::returnPressed, this, &StringEditor::finish);
    }

    void setValue(const QVariant &value) override
    {
        m_pause.stop();
        m_isWaiting = false;
        const QString text = value.toString();
        m_line->setPlaceholderText(value.isValid() ? tr("empty") : tr("no value"));
        if (m_line->text() != text) {
            m_line->setText(text);
            m_line->setCursorPosition(0);
        }
        const int lines = text.count(QLatin1Char('\n')) + 1;
        emit noted(lines > 1 ? tr("%1 lines").arg(lines) : QString());
    }

protected:
    void flush() override
    {
        if (m_isWaiting) {
            m_pause.stop();
            m_isWaiting = false;
            send(m_line->text(), false);
        }
    }

private:
    void addBadge()
    {
        auto *badge = new QLabel(context().language);
        badge->setEnabled(false);
        badge->setToolTip(tr("The text in this language; the other languages are in the rows below"));
        addPassive(badge);
    }
    void addTextMenu()
    {
        auto *menu = new QMenu;
        menu->setObjectName(context().objectName + QStringLiteral("Menu"));
        menu->addAction(tr("Edit several lines"), this, &StringEditor::openBox);
        menu->addSeparator();
        const QVector<TestText> texts = testTexts();
        for (const TestText &test : texts) {
            menu->addAction(tr("Test text: %1").arg(tr(test.name)), this, [this, text = test.text] {
                m_line->setText(text);
                send(text, true);
            });
        }
        addMenuButton("more", tr("Several lines, test texts"), QStringLiteral("More"), menu);
    }
    void onTextEdited()
    {
        m_isWaiting = true;
        beginEntry();
        m_pause.start();
    }
    void openBox()
    {
        auto *popup = new EditorPopup(m_line);
        auto *box = new QPlainTextEdit(m_line->text());
        box->setObjectName(context().objectName + QStringLiteral("Lines"));
        box->setAccessibleName(context().label);
        box->setTabChangesFocus(true);
        box->setMinimumSize(260, 120);
        popup->content()->addWidget(box);
        connect(box, &QPlainTextEdit::textChanged, this, [this, box] {
            m_line->setText(box->toPlainText());
            onTextEdited();
        });
        connect(popup, &EditorPopup::closed, this, &StringEditor::finish);
        connect(popup, &EditorPopup::cancelled, this, [this] {
            flush();
            emit restoreRequested();
        });
        popup->open();
        box->setFocus();
    }

    QLineEdit *m_line;
    QTimer m_pause;
    bool m_isWaiting = false;
};

} // namespace

FieldEditor *makeStringEditor(const FieldEditorContext &context)
{
    return new StringEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "stringeditor.moc"
