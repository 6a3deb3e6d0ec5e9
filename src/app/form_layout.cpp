#include "app/form_layout.h"

#include "app/frame.h"
#include "app/gas_box.h"
#include "app/list_box.h"
#include "app/numeric_box.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcutEvent>
#include <QStyleOptionButton>

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

constexpr int rowGap = 4;                    // pixels between neighbouring labels of a row
constexpr const char* stated = "statedLeft"; // property: the left edge (right edge when right-aligned) in pixels

QString withoutAccessKey(QString caption)
{
    return caption.remove(u'&');
}

QFont weighted(QFont font, bool bold)
{
    font.setBold(bold);
    return font;
}

/// Fusion draws outlines and option marks in a shade of the window's colour, too pale for many eyes. No control is
/// filled with its own, so a darker one changes nothing else: outlines at 3 : 1 or more against both greys.
void strengthenOutline(QWidget& control)
{
    QPalette palette = control.palette();
    palette.setColor(QPalette::Window, QColor(140, 140, 140));
    control.setPalette(palette);
}

/// Where the mark of the focus goes round a button or an option.
QRect focusMark(const QAbstractButton& button)
{
    if (qobject_cast<const QRadioButton*>(&button) == nullptr)
        return button.rect().adjusted(3, 3, -4, -4);
    QStyleOptionButton option;
    option.initFrom(&button);
    option.text = button.text();
    return button.style()->subElementRect(QStyle::SE_RadioButtonFocusRect, &option, &button).adjusted(0, 0, -1, -1);
}

/// A button whose access key clicks it at once. Qt's own waits a tenth of a second, in which a fast typist's next keys
/// would still go to the control before. That it has the focus is marked in black: the style's own mark is pale.
template <typename Button>
class AccessKeyButton : public Button
{
public:
    using Button::Button;

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous())
            return Button::event(event);
        this->setFocus(Qt::ShortcutFocusReason);
        this->click();
        return true;
    }

    void paintEvent(QPaintEvent* event) override
    {
        Button::paintEvent(event);
        if (!this->hasFocus() || !this->window()->testAttribute(Qt::WA_KeyboardFocusChange))
            return;
        QPainter painter(this);
        painter.setPen(QPen(Qt::black, 1, Qt::DotLine));
        painter.drawRect(focusMark(*this));
    }
};

QLabel* createLabel(const ControlRow& row, QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    if (row.kind == Kind::wrappedLabel) {
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    }
    if (row.kind == Kind::rightLabel)
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

/// A box reports its cursor when anything is selected in it for the first time. That must not be when the box gets the
/// focus: screen readers then assume that they have read it already (seen with Orca 43).
template <typename Box>
Box* createBox(QWidget* parent)
{
    auto* const box = new Box(parent);
    box->setMaxLength(std::numeric_limits<int>::max()); // the toolkit's own limit is 32767
    box->selectAll();
    return box;
}

QPushButton* createButton(const ControlRow& row, QWidget* parent)
{
    auto* const button = new AccessKeyButton<QPushButton>(QString::fromUtf8(row.caption), parent);
    button->setAutoDefault(true); // Enter presses it, as Space does
    return button;
}

/// Tab stops at the selected option of a frame, the arrow keys go through the others.
QRadioButton* createOption(const ControlRow& row, QWidget* parent)
{
    auto* const option = new AccessKeyButton<QRadioButton>(QString::fromUtf8(row.caption), parent);
    const auto setTabStop = [option](bool selected) {
        option->setFocusPolicy(selected ? Qt::StrongFocus : Qt::ClickFocus);
    };
    setTabStop(false);
    QObject::connect(option, &QRadioButton::toggled, option, setTabStop);
    return option;
}

QWidget* createControl(const ControlRow& row, QWidget* parent)
{
    switch (row.kind) {
        case Kind::frame:
        case Kind::boldFrame:
            return new Frame(QString::fromUtf8(row.caption), parent);
        case Kind::option:
            return createOption(row, parent);
        case Kind::textBox:
            return createBox<QLineEdit>(parent);
        case Kind::numericBox:
            return createBox<NumericBox>(parent);
        case Kind::comboBox:
            return new GasBox(parent);
        case Kind::list:
            return new ListBox(parent);
        case Kind::button:
            return createButton(row, parent);
        default:
            return createLabel(row, parent);
    }
}

void nameControl(QWidget& control, const QString& name)
{
    control.setAccessibleName(name);
    if (auto* const box = qobject_cast<QComboBox*>(&control)) // screen readers come to the line edit inside
        box->lineEdit()->setAccessibleName(name);
}

QPoint offsetInForm(const QWidget& form, const QWidget& parent, FrameOrigin origin)
{
    return origin == FrameOrigin::form && &parent != &form ? parent.pos() : QPoint();
}

} // namespace

QFont screenFont()
{
    QFont font;
    font.setFamilies({QStringLiteral("MS Sans Serif"), QStringLiteral("Microsoft Sans Serif"),
                      QStringLiteral("Liberation Sans"), QStringLiteral("Arial")});
    font.setPixelSize(11);
    return font;
}

QPalette screenColours()
{
    const bool isDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
    QPalette colours = isDark ? QPalette(QColor(239, 239, 239)) : QPalette();
    colours.setColor(QPalette::Highlight, QColor(37, 108, 152));
    colours.setColor(QPalette::HighlightedText, Qt::white);
    return colours;
}

std::vector<QWidget*> buildForm(QWidget& form, std::span<const ControlRow> rows, FrameOrigin origin, int width,
                                int height)
{
    form.setFont(screenFont());
    form.setFixedSize(pixels(width), pixels(height));

    QList<QLabel*> waitingForBuddy;
    QWidget* lastInTabOrder = nullptr;
    std::vector<QWidget*> built;
    const auto frame = [&](std::string_view name) {
        return built[static_cast<std::size_t>(std::ranges::find(rows, name, &ControlRow::name) - rows.begin())];
    };
    for (const ControlRow& row : rows) {
        QWidget* const parent = row.frame == nullptr ? &form : frame(row.frame);
        QWidget* const widget = built.emplace_back(createControl(row, parent));
        widget->setObjectName(QLatin1String(row.name));
        // Said for every control, or the controls of a bold frame would be bold with it.
        widget->setFont(weighted(form.font(), row.kind == Kind::boldLabel || row.kind == Kind::boldFrame));
        const QPoint position = QPoint(pixels(row.left), pixels(row.top)) - offsetInForm(form, *parent, origin);
        widget->setGeometry(QRect(position, QSize(pixels(row.width), pixels(row.height))));

        if (auto* const label = qobject_cast<QLabel*>(widget)) {
            label->setProperty(stated, position.x());
            label->setMinimumSize(pixels(row.width), pixels(row.height));
            setLabelCaption(*label, QString::fromUtf8(row.caption));
            if (QLatin1String(row.caption).contains(u'&'))
                waitingForBuddy.append(label);
        } else if (widget->focusPolicy() != Qt::NoFocus) {
            strengthenOutline(*widget);
            for (QLabel* const caption : std::exchange(waitingForBuddy, {})) {
                caption->setBuddy(widget);
                setLabelCaption(*caption, caption->text()); // its "&" has become an access key: narrower now
            }
            if (lastInTabOrder != nullptr)
                QWidget::setTabOrder(lastInTabOrder, widget);
            lastInTabOrder = widget;
        }
    }
    return built;
}

void setLabelCaption(QLabel& label, const QString& caption)
{
    label.setText(caption);
    if (label.buddy() != nullptr)
        nameControl(*label.buddy(), withoutAccessKey(caption));
    if (label.wordWrap())
        return;
    const int edge = label.property(stated).toInt();
    // At a fractional scale factor the text may be a part of a pixel wider than its whole pixels say.
    const QSize size = (label.sizeHint() + QSize(1, 0)).expandedTo(label.minimumSize());
    const bool rightAligned = label.alignment().testFlag(Qt::AlignRight);
    label.setGeometry(QRect(QPoint(rightAligned ? edge - size.width() : edge, label.y()), size));
}

void keepApart(std::span<QLabel* const> row, int rightEdge)
{
    const auto width = [](const QLabel* label) { return label->text().isEmpty() ? 0 : label->width(); };
    std::vector<int> lefts;
    int end = 0;
    for (const QLabel* const label : row) {
        const int statedLeft = label->property(stated).toInt();
        lefts.push_back(end > statedLeft ? end + rowGap : statedLeft);
        end = lefts.back() + width(label);
    }
    for (std::size_t at = row.size(); at-- > 1 && lefts[at] + width(row[at]) > rightEdge;) {
        lefts[at] = rightEdge - width(row[at]);
        rightEdge = lefts[at] - rowGap;
    }
    end = 0; // what finds no room reaches over the edge rather than over its neighbour
    for (std::size_t at = 0; at < row.size(); ++at) {
        const int left = lefts[at] >= end ? lefts[at] : end + rowGap;
        row[at]->move(left, row[at]->y());
        end = left + width(row[at]);
    }
}

void paintLightGrey(QWidget& widget)
{
    const QColor grey(192, 192, 192);
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, grey);
    palette.setColor(QPalette::Base, Qt::white);
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text})
        palette.setColor(text, Qt::black);
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, text, grey.darker(190));
    widget.setPalette(palette);
    widget.setAutoFillBackground(true);
}

void centreOnScreen(QWidget& window)
{
    const QRect screen = window.screen()->geometry();
    const QSize spare = (screen.size() - window.frameSize()) / 2;
    window.move(screen.topLeft() + QPoint(std::max(spare.width(), 0), std::max(spare.height(), 0)));
}

void onClick(QPushButton& button, QWidget& form, const std::function<void()>& handler)
{
    QObject::connect(&button, &QPushButton::clicked, &form, [handler] {
        if (QApplication::activeModalWidget() == nullptr)
            handler();
    });
}

void scrollIntoView(QWidget& control)
{
    for (QWidget* around = control.parentWidget(); around != nullptr; around = around->parentWidget())
        if (auto* const window = qobject_cast<QScrollArea*>(around))
            window->ensureWidgetVisible(&control);
}
