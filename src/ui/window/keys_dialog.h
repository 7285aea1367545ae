// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <QMainWindow>

namespace texturon {

/// Every command of a window's menus with its keys, and what mouse and keys do in the graphs.
class CKeysDialog : public QDialog {
  Q_OBJECT

public:
  explicit CKeysDialog(QMainWindow& window);
};

}  // namespace texturon
