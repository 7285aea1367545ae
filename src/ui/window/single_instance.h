// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLocalServer>
#include <QStringList>

namespace texturon {

/// One window a user and session: the first start of the program listens, a later one hands its files over and ends.
/// They meet in the user's own folder for running programs, which nobody else can look into, and each end makes sure
/// that the other is the same user. Without such a folder, and where nobody answers in time, every start has a window.
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
  /// Where it lies; empty: the user has no folder of that kind.
  static QString SocketOf(const QString& name);

signals:
  /// Another start was made with these files. Comes from the event loop, not from within the reading: who takes it may
  /// let events be handled meanwhile.
  void Arrived(const QStringList& files);

private:
  enum class Answer { kTaken, kNone, kNobody };
  Answer HandOver(const QString& socketName, const QStringList& files) const;
  void Receive();

  QString name_;
  QLocalServer server_;
};

}  // namespace texturon
