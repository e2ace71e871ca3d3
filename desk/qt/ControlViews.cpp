#include "ControlViews.h"

#include "GridView.h"
#include "Pictures.h"
#include "ScreenWidget.h"

#include "host/ui/Grid.h"

#include <QButtonGroup>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QValidator>
#include <QSignalBlocker>
#include <QToolButton>

#include <cmath>

namespace qx::desk {

QString ToQString(const std::string& utf8) { return QString::fromStdString(utf8); }

int TwipsToPixels(int twips, const QWidget& widget) {
    return static_cast<int>(std::lround(twips * widget.logicalDpiX() / 1440.0));
}

void ControlView::Refresh() {
    QWidget* widget = Widget();
    widget->setHidden(!control_.Visible());
    widget->setEnabled(control_.Enabled());
    widget->setToolTip(ToQString(control_.ToolTip()));
    if (control_.Width() > 0 && !Expands())
        FocusWidget()->setFixedWidth(TwipsToPixels(control_.Width(), *widget));
    RefreshContent();
}

namespace {

// A numeric box refuses a keystroke that would leave it holding what is not a number being
// typed: the same rule as the model's.
class NumberValidator : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& input, int& /*position*/) const override {
        return ui::IsNumberBeingTyped(input.toStdString()) ? Acceptable : Invalid;
    }
};

class LabelView : public ControlView {
public:
    LabelView(ui::Label& label, ScreenWidget& screen, QWidget* parent)
        : ControlView(label, screen), label_(label), widget_(new QLabel(parent)),
          normalFont_(widget_->font()) {}
    QWidget* Widget() const override { return widget_; }

protected:
    void RefreshContent() override {
        widget_->setText(ToQString(label_.Text()));
        QFont font = normalFont_;
        if (label_.Heading) {
            font.setPointSizeF(font.pointSizeF() * 1.5);
            font.setBold(true);
        }
        widget_->setFont(font);
    }

private:
    ui::Label& label_;
    QLabel* widget_;
    QFont normalFont_;
};

// A control whose caption stands on a label before its editor.
class CaptionedView : public ControlView {
public:
    CaptionedView(ui::Control& control, ScreenWidget& screen, QWidget* parent)
        : ControlView(control, screen), box_(new QWidget(parent)), row_(new QHBoxLayout(box_)),
          caption_(new QLabel(box_)) {
        row_->setContentsMargins(0, 0, 0, 0);
        row_->addWidget(caption_);
    }
    QWidget* Widget() const override { return box_; }
    QLabel* CaptionLabel() const override { return caption_; }

protected:
    void RefreshCaption() {
        caption_->setText(ToQString(Model().Caption()));
        caption_->setHidden(Model().Caption().empty());
    }
    QWidget* Box() const { return box_; }
    QHBoxLayout* Row() const { return row_; }
    QLabel* Caption() const { return caption_; }

private:
    QWidget* box_;
    QHBoxLayout* row_;
    QLabel* caption_;
};

class TextBoxView : public CaptionedView {
public:
    TextBoxView(ui::TextBox& box, ScreenWidget& screen, QWidget* parent)
        : CaptionedView(box, screen, parent), box_(box), edit_(new QLineEdit(Box())),
          lookup_(new QToolButton(Box())) {
        edit_->setObjectName(ToQString(box.Name()));
        Caption()->setBuddy(edit_);
        lookup_->setText(QStringLiteral("..."));
        lookup_->setToolTip(QStringLiteral("Look up (F2)"));
        lookup_->setFocusPolicy(Qt::NoFocus);
        Row()->addWidget(edit_, 1);
        Row()->addWidget(lookup_);
        screen.WatchKeys(edit_);
        QObject::connect(edit_, &QLineEdit::textEdited, edit_, [this](const QString& text) {
            bool taken = false;
            Screen().Act([&] { taken = box_.Type(text.toStdString()); });
            if (!taken) RefreshContent();
        });
        QObject::connect(lookup_, &QToolButton::clicked, edit_, [this] { Lookup(); });
    }
    QWidget* FocusWidget() const override { return edit_; }
    bool DefaultKey(const ui::KeyPress& key) override {
        if (key.key != ui::Key::F2 || !key.Plain() || !HasLookup()) return false;
        Lookup();
        return true;
    }

protected:
    void RefreshContent() override {
        RefreshCaption();
        const QString text = ToQString(box_.Text());
        // Only a real change is shown: rewriting the text would throw the cursor to the end
        // while the user types in the middle.
        if (edit_->text() != text) {
            const QSignalBlocker quiet(edit_);
            edit_->setText(text);
        }
        edit_->setMaxLength(box_.MaxLength > 0 ? box_.MaxLength : 32767);
        if (box_.NumericOnly && !edit_->validator())
            edit_->setValidator(new NumberValidator(edit_));
        else if (!box_.NumericOnly && edit_->validator())
            edit_->setValidator(nullptr);
        if (selectionsShown_ != box_.Selections()) {
            selectionsShown_ = box_.Selections();
            edit_->selectAll();
        }
        lookup_->setVisible(HasLookup());
        lookup_->setToolTip(box_.DateEntry ? QStringLiteral("Calendar (F2)") : QStringLiteral("Look up (F2)"));
    }

private:
    bool HasLookup() const { return box_.DateEntry || box_.OnLookup; }
    void Lookup() {
        if (box_.DateEntry) {
            ShowCalendar();
            return;
        }
        Screen().Act([this] {
            if (box_.OnLookup) box_.OnLookup();
        });
    }

    // A month under the box, opened on the day it holds: arrows and Page Up/Down move, Enter
    // takes the day, Esc leaves the box as it was.
    void ShowCalendar() {
        auto* calendar = new QCalendarWidget(edit_);
        calendar->setObjectName(QStringLiteral("Calendar"));
        calendar->setWindowFlags(Qt::Popup);
        calendar->setAttribute(Qt::WA_DeleteOnClose);
        calendar->setFirstDayOfWeek(Qt::Monday);
        calendar->setGridVisible(true);
        if (const auto day = Date::ParseDisplay(box_.Text()))
            calendar->setSelectedDate(QDate(day->Year(), day->Month(), day->Day()));
        QObject::connect(calendar, &QCalendarWidget::activated, edit_, [this, calendar](QDate day) {
            Screen().Act([&] { box_.Type(day.toString(QStringLiteral("dd/MM/yyyy")).toStdString()); });
            calendar->close();
            edit_->setFocus();
            edit_->selectAll();
        });
        calendar->move(edit_->mapToGlobal(QPoint(0, edit_->height())));
        calendar->show();
        calendar->setFocus();
    }

    ui::TextBox& box_;
    QLineEdit* edit_;
    QToolButton* lookup_;
    int selectionsShown_ = 0;
};

// A box of several lines: Enter starts a new line, Tab moves on.
class TextAreaView : public CaptionedView {
public:
    TextAreaView(ui::TextBox& box, ScreenWidget& screen, QWidget* parent)
        : CaptionedView(box, screen, parent), box_(box), edit_(new QPlainTextEdit(Box())) {
        edit_->setObjectName(ToQString(box.Name()));
        edit_->setTabChangesFocus(true);
        Caption()->setBuddy(edit_);
        Row()->addWidget(edit_, 1);
        screen.WatchKeys(edit_);
        QObject::connect(edit_, &QPlainTextEdit::textChanged, edit_, [this] {
            Screen().Act([this] { box_.Type(edit_->toPlainText().toStdString()); });
        });
    }
    QWidget* FocusWidget() const override { return edit_; }

protected:
    void RefreshContent() override {
        RefreshCaption();
        const QString text = ToQString(box_.Text());
        if (edit_->toPlainText() != text) {
            const QSignalBlocker quiet(edit_);
            edit_->setPlainText(text);
        }
    }

private:
    ui::TextBox& box_;
    QPlainTextEdit* edit_;
};

class CheckBoxView : public ControlView {
public:
    CheckBoxView(ui::CheckBox& box, ScreenWidget& screen, QWidget* parent)
        : ControlView(box, screen), box_(box), widget_(new QCheckBox(parent)) {
        widget_->setObjectName(ToQString(box.Name()));
        screen.WatchKeys(widget_);
        QObject::connect(widget_, &QCheckBox::clicked, widget_,
                         [this] { Screen().Act([this] { box_.Click(); }); });
    }
    QWidget* Widget() const override { return widget_; }

protected:
    void RefreshContent() override {
        const QSignalBlocker quiet(widget_);
        widget_->setText(ToQString(box_.Caption()));
        widget_->setChecked(box_.Checked());
    }

private:
    ui::CheckBox& box_;
    QCheckBox* widget_;
};

class ComboBoxView : public CaptionedView {
public:
    ComboBoxView(ui::ComboBox& list, ScreenWidget& screen, QWidget* parent)
        : CaptionedView(list, screen, parent), list_(list), combo_(new QComboBox(Box())) {
        combo_->setObjectName(ToQString(list.Name()));
        Caption()->setBuddy(combo_);
        Row()->addWidget(combo_, 1);
        screen.WatchKeys(combo_);
        QObject::connect(combo_, &QComboBox::activated, combo_, [this](int index) {
            Screen().Act([&] { list_.SetSelectedIndex(index); });
        });
    }
    QWidget* FocusWidget() const override { return combo_; }

protected:
    void RefreshContent() override {
        RefreshCaption();
        const QSignalBlocker quiet(combo_);
        const auto& items = list_.Items();
        bool same = combo_->count() == static_cast<int>(items.size());
        for (int i = 0; same && i < combo_->count(); ++i)
            same = combo_->itemText(i) == ToQString(items[static_cast<std::size_t>(i)].text);
        if (!same) {
            combo_->clear();
            for (const auto& item : items) combo_->addItem(ToQString(item.text));
        }
        combo_->setCurrentIndex(list_.SelectedIndex());
    }

private:
    ui::ComboBox& list_;
    QComboBox* combo_;
};

class OptionGroupView : public ControlView {
public:
    OptionGroupView(ui::OptionGroup& group, ScreenWidget& screen, QWidget* parent)
        : ControlView(group, screen), group_(group), box_(new QGroupBox(parent)),
          buttons_(new QButtonGroup(box_)) {
        box_->setObjectName(ToQString(group.Name()));
        auto* row = new QHBoxLayout(box_);
        int index = 0;
        for (const auto& option : group.Options()) {
            auto* radio = new QRadioButton(ToQString(option), box_);
            buttons_->addButton(radio, index++);
            row->addWidget(radio);
            screen.WatchKeys(radio);
        }
        row->addStretch();
        QObject::connect(buttons_, &QButtonGroup::idClicked, box_,
                         [this](int id) { Screen().Act([&] { group_.Click(id); }); });
    }
    QWidget* Widget() const override { return box_; }
    QWidget* FocusWidget() const override {
        if (QAbstractButton* checked = buttons_->checkedButton()) return checked;
        return box_;
    }

protected:
    void RefreshContent() override {
        box_->setTitle(ToQString(group_.Caption()));
        if (QAbstractButton* radio = buttons_->button(group_.SelectedIndex())) {
            const QSignalBlocker quiet(buttons_);
            radio->setChecked(true);
        }
    }

private:
    ui::OptionGroup& group_;
    QGroupBox* box_;
    QButtonGroup* buttons_;
};

class ButtonView : public ControlView {
public:
    ButtonView(ui::Button& button, ScreenWidget& screen, QWidget* parent)
        : ControlView(button, screen), button_(button), widget_(new QPushButton(parent)) {
        widget_->setObjectName(ToQString(button.Name()));
        widget_->setAutoDefault(false);
        screen.WatchKeys(widget_);
        QObject::connect(widget_, &QPushButton::clicked, widget_,
                         [this] { Screen().Command([this] { button_.Click(); }); });
    }
    QWidget* Widget() const override { return widget_; }

protected:
    void RefreshContent() override { widget_->setText(ToQString(button_.Caption())); }

private:
    ui::Button& button_;
    QPushButton* widget_;
};

// The bar's items may be redefined, added to or cut while the screen runs, even by the
// handler of a click on the bar: its buttons are kept and relabelled, never rebuilt.
class ButtonBarView : public ControlView {
public:
    ButtonBarView(ui::ButtonBar& bar, ScreenWidget& screen, QWidget* parent)
        : ControlView(bar, screen), bar_(bar), widget_(new QWidget(parent)),
          layout_(new QHBoxLayout(widget_)) {
        widget_->setObjectName(ToQString(bar.Name()));
        layout_->setContentsMargins(0, 0, 0, 0);
        layout_->addStretch();
    }
    QWidget* Widget() const override { return widget_; }

protected:
    void RefreshContent() override {
        const auto& items = bar_.Items();
        while (buttons_.size() < items.size()) AddButton();
        while (buttons_.size() > items.size()) {
            buttons_.back()->hide();
            buttons_.back()->deleteLater();
            buttons_.pop_back();
        }
        for (std::size_t i = 0; i < items.size(); ++i) {
            QPushButton* button = buttons_[i];
            button->setObjectName(ToQString(bar_.Name() + "." + items[i].key));
            button->setText(ToQString(items[i].caption));
            button->setToolTip(ToQString(items[i].toolTip));
            button->setIcon(PictureIcon(items[i].icon));
            button->setEnabled(items[i].enabled);
        }
    }

private:
    void AddButton() {
        auto* button = new QPushButton(widget_);
        button->setFocusPolicy(Qt::NoFocus); // keyboard first: the focus stays in the work
        button->setAutoDefault(false);
        const std::size_t index = buttons_.size();
        QObject::connect(button, &QPushButton::clicked, button, [this, index] {
            if (index >= bar_.Items().size()) return;
            const std::string key = bar_.Items()[index].key;
            Screen().Command([&] { bar_.Click(key); });
        });
        layout_->insertWidget(static_cast<int>(index), button);
        buttons_.push_back(button);
    }

    ui::ButtonBar& bar_;
    QWidget* widget_;
    QHBoxLayout* layout_;
    std::vector<QPushButton*> buttons_;
};

class ButtonCubeView : public ControlView {
public:
    ButtonCubeView(ui::ButtonCube& cube, ScreenWidget& screen, QWidget* parent)
        : ControlView(cube, screen), cube_(cube), widget_(new QWidget(parent)),
          layout_(new QGridLayout(widget_)) {
        widget_->setObjectName(ToQString(cube.Name()));
    }
    QWidget* Widget() const override { return widget_; }
    QWidget* FocusWidget() const override {
        return buttons_.empty() ? widget_ : static_cast<QWidget*>(buttons_.front());
    }

protected:
    void RefreshContent() override {
        const auto& definitions = cube_.Buttons();
        if (buttons_.size() != definitions.size()) Rebuild(definitions.size());
        for (std::size_t i = 0; i < definitions.size(); ++i) {
            buttons_[i]->setText(ToQString(definitions[i].caption));
            buttons_[i]->setToolTip(ToQString(definitions[i].picture));
            buttons_[i]->setIcon(PictureIcon(definitions[i].picture));
        }
    }

private:
    void Rebuild(std::size_t count) {
        for (auto* button : buttons_) button->deleteLater();
        buttons_.clear();
        // Near square: ten buttons stand in three rows of four.
        const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(double(count)))));
        for (std::size_t i = 0; i < count; ++i) {
            auto* button = new QToolButton(widget_);
            button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
            button->setIconSize(QSize(48, 48));
            button->setMinimumSize(150, 96);
            button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
            Screen().WatchKeys(button);
            QObject::connect(button, &QToolButton::clicked, button,
                             [this, i] { Screen().Command([&] { cube_.Click(i); }); });
            const int index = static_cast<int>(i);
            layout_->addWidget(button, index / columns, index % columns);
            buttons_.push_back(button);
        }
    }

    ui::ButtonCube& cube_;
    QWidget* widget_;
    QGridLayout* layout_;
    std::vector<QToolButton*> buttons_;
};

class StdButtonsView : public ControlView {
public:
    StdButtonsView(ui::StdButtons& buttons, ScreenWidget& screen, QWidget* parent)
        : ControlView(buttons, screen), model_(buttons), widget_(new QWidget(parent)) {
        widget_->setObjectName(ToQString(buttons.Name()));
        auto* row = new QHBoxLayout(widget_);
        row->setContentsMargins(0, 0, 0, 0);
        row->addStretch();
        int index = 0;
        for (const auto& caption : buttons.Captions()) {
            auto* button = new QPushButton(ToQString(caption), widget_);
            button->setAutoDefault(false);
            row->addWidget(button);
            screen.WatchKeys(button);
            QObject::connect(button, &QPushButton::clicked, button,
                             [this, index] { Screen().Command([&] { model_.Click(index); }); });
            ++index;
        }
    }
    QWidget* Widget() const override { return widget_; }

protected:
    void RefreshContent() override {}

private:
    ui::StdButtons& model_;
    QWidget* widget_;
};

class PeriodView : public CaptionedView {
public:
    PeriodView(ui::PeriodBox& period, ScreenWidget& screen, QWidget* parent)
        : CaptionedView(period, screen, parent), period_(period), from_(DateEdit()),
          to_(DateEdit()) {
        from_->setObjectName(ToQString(period.Name() + ".From"));
        to_->setObjectName(ToQString(period.Name() + ".To"));
        Row()->addWidget(new QLabel(QStringLiteral("From"), Box()));
        Row()->addWidget(from_);
        Row()->addWidget(new QLabel(QStringLiteral("To"), Box()));
        Row()->addWidget(to_);
        for (QDateEdit* edit : {from_, to_}) {
            screen.WatchKeys(edit);
            QObject::connect(edit, &QDateEdit::dateChanged, edit, [this] {
                Screen().Act([this] { period_.SetPeriod(DayOf(from_), DayOf(to_)); });
            });
        }
    }
    QWidget* FocusWidget() const override { return from_; }

protected:
    void RefreshContent() override {
        RefreshCaption();
        Show(from_, period_.From());
        Show(to_, period_.To());
    }

private:
    // A period may be open at either end: the earliest day stands for "none" and shows blank.
    QDateEdit* DateEdit() {
        auto* edit = new QDateEdit(Box());
        edit->setDisplayFormat(QStringLiteral("dd/MM/yyyy"));
        edit->setCalendarPopup(true);
        edit->setMinimumDate(kNoDay);
        edit->setSpecialValueText(QStringLiteral(" "));
        edit->setDate(kNoDay);
        return edit;
    }
    static std::optional<Date> DayOf(const QDateEdit* edit) {
        const QDate day = edit->date();
        if (day == kNoDay) return std::nullopt;
        return Date::FromYmd(day.year(), day.month(), day.day());
    }
    static void Show(QDateEdit* edit, std::optional<Date> day) {
        const QSignalBlocker quiet(edit);
        edit->setDate(day ? QDate(day->Year(), day->Month(), day->Day()) : kNoDay);
    }

    static inline const QDate kNoDay{1900, 1, 1};
    ui::PeriodBox& period_;
    QDateEdit* from_;
    QDateEdit* to_;
};

} // namespace

std::unique_ptr<ControlView> MakeControlView(ui::Control& control, ScreenWidget& screen,
                                             QWidget* parent) {
    using ui::ControlKind;
    switch (control.Kind()) {
    case ControlKind::Label:
        return std::make_unique<LabelView>(static_cast<ui::Label&>(control), screen, parent);
    case ControlKind::TextBox:
        if (static_cast<ui::TextBox&>(control).MultiLine)
            return std::make_unique<TextAreaView>(static_cast<ui::TextBox&>(control), screen, parent);
        return std::make_unique<TextBoxView>(static_cast<ui::TextBox&>(control), screen, parent);
    case ControlKind::CheckBox:
        return std::make_unique<CheckBoxView>(static_cast<ui::CheckBox&>(control), screen, parent);
    case ControlKind::ComboBox:
        return std::make_unique<ComboBoxView>(static_cast<ui::ComboBox&>(control), screen, parent);
    case ControlKind::OptionGroup:
        return std::make_unique<OptionGroupView>(static_cast<ui::OptionGroup&>(control), screen,
                                                 parent);
    case ControlKind::Button:
        return std::make_unique<ButtonView>(static_cast<ui::Button&>(control), screen, parent);
    case ControlKind::ButtonBar:
        return std::make_unique<ButtonBarView>(static_cast<ui::ButtonBar&>(control), screen,
                                               parent);
    case ControlKind::ButtonCube:
        return std::make_unique<ButtonCubeView>(static_cast<ui::ButtonCube&>(control), screen,
                                                parent);
    case ControlKind::StdButtons:
        return std::make_unique<StdButtonsView>(static_cast<ui::StdButtons&>(control), screen,
                                                parent);
    case ControlKind::Period:
        return std::make_unique<PeriodView>(static_cast<ui::PeriodBox&>(control), screen, parent);
    case ControlKind::Grid:
        return std::make_unique<GridView>(static_cast<ui::Grid&>(control), screen, parent);
    }
    throw std::logic_error("no view for control " + control.Name());
}

} // namespace qx::desk
