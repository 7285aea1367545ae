// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/setting_field.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>
#include <utility>

#include "base/quantity.h"
#include "settings/setting_entry.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

class WheelGuard : public QObject {
public:
  using QObject::QObject;

  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus()) return false;
    event->ignore();
    return true;
  }
};

/// What a word of the file is called in a window: those of the filters as their page has them.
QString NameOfWord(std::string_view word) {
  if (word.empty()) return CSettingField::tr("as on the page Filters");
  const std::pair<std::string_view, QString> names[] = {
      {"gaussian", CSettingField::tr("Gaussian")},
      {"spline", CSettingField::tr("Spline Gaussian")},
      {"rk", CSettingField::tr("ISO 13565")},
      {"robust", CSettingField::tr("Robust Gaussian (coef: 4.45)")},
      {"robust-gaussian-2", CSettingField::tr("robust Gaussian, second order")},
      {"roughness", CSettingField::tr("none of their own")}};
  const auto* const name =
      std::find_if(std::begin(names), std::end(names), [word](const auto& each) { return each.first == word; });
  return name != std::end(names) ? name->second : FromText(word);
}

}  // namespace

void GuardFromWheel(QComboBox& list) {
  list.setFocusPolicy(Qt::StrongFocus);
  list.installEventFilter(new WheelGuard(&list));
}

CSettingField::CSettingField(const SettingPlace& place, Settings& settings, bool isCell, QWidget* parent)
    : QWidget(parent), place_(place), settings_(settings), isCell_(isCell), choices_(ChoicesOf(*place.key)) {
  const SettingBinding& binding = place_.key->binding;
  const QString name = FromText(binding.section) + "." + FromText(KeyOfRow(binding, place_.row));
  setObjectName(name);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  MakeEditor();
  setFocusProxy(layout->itemAt(0)->widget());
  focusProxy()->setAccessibleName(Meaning());
  focusProxy()->setToolTip(Tip());
  Refresh();
}

void CSettingField::MakeEditor() {
  auto* const row = static_cast<QHBoxLayout*>(layout());
  if (place_.key->binding.type == SettingType::kFlag) {
    box_ = new QCheckBox(this);
    row->addWidget(box_);
    connect(box_, &QCheckBox::clicked, this, [this](bool on) { Put(on); });
  } else if (!choices_.empty() || !place_.key->binding.words.empty()) {
    list_ = new QComboBox(this);
    GuardFromWheel(*list_);
    for (const SettingChoice& choice : choices_) list_->addItem(EngineText(choice.name));
    for (const std::string_view word : WordsOf(place_.key->binding)) list_->addItem(NameOfWord(word), FromText(word));
    // Its longest text does not widen the page.
    list_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list_->setMinimumContentsLength(isCell_ ? 8 : 16);
    list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    row->addWidget(list_);
    connect(list_, &QComboBox::activated, this, [this](int index) {
      if (choices_.empty()) {
        Put(std::string(WordsOf(place_.key->binding).at(static_cast<std::size_t>(index))));
      } else {
        Put(choices_[static_cast<std::size_t>(index)].value);
      }
    });
  } else {
    line_ = new QLineEdit(this);
    const bool isText = place_.key->binding.type == SettingType::kText;
    const int character = line_->fontMetrics().averageCharWidth();
    if (!isText && isCell_) line_->setMaximumWidth(character * 15);
    line_->setMinimumWidth(character * (isCell_ ? 7 : 12));
    // Of a radius in whole numbers all digits are taken.
    constexpr const char* kLongest = "-0.021008403361344536";
    if (IsCurvature()) line_->setMinimumWidth(line_->fontMetrics().horizontalAdvance(kLongest) + 2 * character);
    row->addWidget(line_, 2);
    connect(line_, &QLineEdit::textEdited, this, &CSettingField::Take);
    connect(line_, &QLineEdit::editingFinished, this, [this] { before_.reset(); });
    if (!isCell_) {
      unit_ = new QLabel(this);
      // So that all lines of a page end alike.
      unit_->setMinimumWidth(character * 5);
      row->addWidget(unit_);
      reason_ = new QLabel(this);
      reason_->setWordWrap(true);
      reason_->setVisible(false);
      row->addWidget(reason_, 2);
    }
  }
  if (!isCell_ && box_ != nullptr) row->addStretch(1);
}

QString CSettingField::Title() const {
  const QString title = QObject::tr(place_.key->entry.shortTitle);
  return title.isEmpty() ? Meaning() : title;
}

QString CSettingField::Meaning() const {
  QString title = EngineText(place_.key->meaning);
  if (!title.isEmpty()) title[0] = title[0].toUpper();
  return title;
}

bool CSettingField::IsCurvature() const {
  return place_.key->unit == kCurvaturePerMM.metricUnit;
}

QString CSettingField::RadiusText(const SettingValue& value, bool metric) const {
  if (!IsCurvature()) return {};
  const double curvature = std::get<double>(value);
  // Below the unit: the entry has many digits.
  if (curvature == 0.0) return tr(",\nno radius: flat");
  return tr(",\nradius %1").arg(Readable(FromText(LengthText(1.0 / curvature, metric))));
}

void CSettingField::Refresh() {
  const SettingBinding& binding = place_.key->binding;
  if (binding.isRepeated() && place_.row >= binding.rows->count(settings_)) return;
  const SettingValue value = binding.get(settings_, place_.row);
  const bool metric = settings_.display.Metric;
  if (box_ != nullptr) box_->setChecked(std::get<bool>(value));
  if (list_ != nullptr && choices_.empty()) {
    list_->setCurrentIndex(list_->findData(FromText(std::get<std::string>(value)), Qt::UserRole, Qt::MatchFixedString));
  } else if (list_ != nullptr) {
    const auto index = ChoiceOf(choices_, std::get<std::int32_t>(value));
    list_->setCurrentIndex(index ? static_cast<int>(*index) : -1);
  }
  if (unit_ != nullptr) unit_->setText(FromText(EntryUnit(*place_.key, metric)) + RadiusText(value, metric));
  if (line_ == nullptr || !fault_.isEmpty()) return;
  // "0." is on its way to "0.5".
  const EntryReading entry = ReadEntry(*place_.key, ToText(line_->text()), metric);
  if (entry.ok() && entry.value == value) return;
  const QString text = FromText(EntryText(*place_.key, value, metric));
  if (line_->text() == text) return;
  line_->setText(text);
  // The leading figures are those that count.
  if (!line_->hasFocus()) line_->setCursorPosition(0);
}

void CSettingField::Reset() {
  if (line_ != nullptr) {
    before_.reset();
    Mark({});
  }
  Refresh();
}

void CSettingField::Take(const QString& text) {
  const SettingBinding& binding = place_.key->binding;
  if (!before_) before_ = binding.get(settings_, place_.row);
  const EntryReading entry = ReadEntry(*place_.key, ToText(text), settings_.display.Metric);
  Mark(EngineText(entry.fault));
  if (entry.ok()) {
    Put(entry.value);
  } else {
    Put(*before_);
  }
}

void CSettingField::Put(const SettingValue& value) {
  place_.key->binding.set(settings_, place_.row, value);
  emit Edited();
}

void CSettingField::Mark(const QString& fault) {
  if (fault == fault_) return;
  fault_ = fault;
  // Thick border and words, so that nobody depends on the colour.
  line_->setStyleSheet(fault.isEmpty() ? QString() : "QLineEdit { border: 2px solid #D55E00; }");
  line_->setToolTip(fault.isEmpty() ? Tip() : fault);
  line_->setAccessibleDescription(fault);
  if (reason_ != nullptr) {
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, WarningColour(IsDark(colours)));
    reason_->setPalette(colours);
    reason_->setText(fault);
    reason_->setVisible(!fault.isEmpty());
  }
}

}  // namespace texturon
