// SPDX-License-Identifier: Apache-2.0

#include "ui/window/single_instance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QLocalSocket>
#include <QLockFile>

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
      (QDir::homePath() + '\n' + qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"))).toUtf8();
  return "texturon-" + QCryptographicHash::hash(session, QCryptographicHash::Sha256).toHex().left(16);
}

bool CSingleInstance::HandOverOrListen(const QStringList& files) {
  // Of two starts at once one listens before the other asks.
  QLockFile turn(QDir(QDir::tempPath()).filePath(name_ + ".lock"));
  turn.tryLock(kPatienceMS);
  if (HandOver(files)) return true;
  // Nobody answers: what a crashed process left is in the way of a listener only.
  QLocalServer::removeServer(name_);
  server_.listen(name_);
  return false;
}

bool CSingleInstance::HandOver(const QStringList& files) const {
  QLocalSocket socket;
  socket.connectToServer(name_);
  if (!socket.waitForConnected(kPatienceMS)) return false;
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(kStream);
  stream << files;
  socket.write(bytes);
  socket.flush();
  // A process that hangs is one that listens: a second window would not help, its answer is not waited for for long.
  socket.waitForReadyRead(kPatienceMS);
  return true;
}

void CSingleInstance::Receive() {
  while (QLocalSocket* const socket = server_.nextPendingConnection()) {
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
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
      emit Arrived(files);
    };
    connect(socket, &QLocalSocket::readyRead, this, read);
    if (socket->bytesAvailable() > 0) read();
  }
}

}  // namespace texturon
