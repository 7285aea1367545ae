// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLocalServer>
#include <QStringList>

namespace texturon {

/// One window a user and session: the first start of the program listens, a later one hands its files over and ends.
/// The name is free again once its process has gone, however it went.
class CSingleInstance : public QObject {
  Q_OBJECT

public:
  /// `name`: what the starts of one program have in common.
  explicit CSingleInstance(const QString& name, QObject* parent = nullptr);

  /// Hands files (absolute paths; none just brings the window forward) to the start that listens already. False: there
  /// is none, and this one listens from now on.
  bool HandOverOrListen(const QStringList& files);

  /// A name for this user and this screen.
  static QString UsualName();

signals:
  /// Another start was made with these files.
  void Arrived(const QStringList& files);

private:
  bool HandOver(const QStringList& files) const;
  void Receive();

  QString name_;
  QLocalServer server_;
};

}  // namespace texturon
