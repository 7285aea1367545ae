// SPDX-License-Identifier: Apache-2.0

#include "ui/window/single_instance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

#include "platform/platform.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr int kPatienceMS = 5'000;
constexpr auto kStream = QDataStream::Qt_6_0;
/// More is no list of files.
constexpr qint64 kMostBytes = 1 << 20;

}  // namespace

CSingleInstance::CSingleInstance(const QString& name, QObject* parent) : QObject(parent), name_(name) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &CSingleInstance::Receive);
}

QString CSingleInstance::UsualName() {
  const QByteArray session =
      (QDir::homePath() + '\n' +
       qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY", qEnvironmentVariable("SESSIONNAME"))))
          .toUtf8();
  return "texturon-" + QCryptographicHash::hash(session, QCryptographicHash::Sha256).toHex().left(16);
}

QString CSingleInstance::SocketOf(const QString& name) {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
#ifdef Q_OS_WIN
  return name;
#else
  return !folder.isEmpty() && IsPrivateFolder(ToPath(folder)) ? QDir(folder).filePath(name) : QString();
#endif
}

bool CSingleInstance::HandOverOrListen(const QStringList& files) {
  const QString socketName = SocketOf(name_);
  if (socketName.isEmpty()) return false;
  // Of two starts at once one listens before the other asks.
  QLockFile turn(QDir::temp().filePath(socketName + ".lock"));  // a whole path stays one
  turn.tryLock(kPatienceMS);
  const Answer answer = HandOver(socketName, files);
  if (answer == Answer::kNobody) {
    // What a crashed process left is in the way of a listener only.
    QLocalServer::removeServer(socketName);
    server_.listen(socketName);
  }
  return answer == Answer::kTaken;
}

CSingleInstance::Answer CSingleInstance::HandOver(const QString& socketName, const QStringList& files) const {
  QLocalSocket socket;
  socket.connectToServer(socketName);
  if (!socket.waitForConnected(kPatienceMS)) return Answer::kNobody;
  if (!IsPeerOurs(socket.socketDescriptor())) return Answer::kNone;
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(kStream);
  stream << files;
  socket.write(bytes);
  socket.flush();
  // One that hangs shows nothing.
  return socket.waitForReadyRead(kPatienceMS) ? Answer::kTaken : Answer::kNone;
}

void CSingleInstance::Receive() {
  while (QLocalSocket* const socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!IsPeerOurs(socket->socketDescriptor())) {
      socket->abort();
      continue;
    }
    const auto read = [this, socket] {
      if (socket->bytesAvailable() > kMostBytes) return socket->abort();
      QDataStream stream(socket);
      stream.setVersion(kStream);
      stream.startTransaction();
      QStringList files;
      stream >> files;
      if (!stream.commitTransaction()) return;
      socket->write("1");
      socket->flush();
      QMetaObject::invokeMethod(
          this, [this, files] { emit Arrived(files); }, Qt::QueuedConnection);
    };
    connect(socket, &QLocalSocket::readyRead, this, read);
    if (socket->bytesAvailable() > 0) read();
  }
}

}  // namespace texturon
