#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

#include <functional>

/// A message bus of the test's own, which starts no services.
class PrivateBus
{
public:
    PrivateBus() { start(); }

    /// Starts it, at the same address each time. False if there is no bus to be had.
    bool start()
    {
        QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly)) {
            return false;
        }
        configuration.write("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                            "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">"
                            "<busconfig><type>session</type><listen>");
        configuration.write(address().toUtf8());
        configuration.write("</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                            "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>");
        configuration.close();
        m_daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                                                       QStringLiteral("--config-file=") + configuration.fileName()});
        return m_daemon.waitForReadyRead(); // it listens once it says where
    }

    ~PrivateBus() { stop(); }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    bool runs() const { return m_daemon.state() == QProcess::Running; }
    QString address() const { return QStringLiteral("unix:path=") + m_folder.filePath(QStringLiteral("bus")); }

    void stop()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
        QFile::remove(m_folder.filePath(QStringLiteral("bus")));
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
};

/// A desktop portal as the test wants it. It answers while the test's event loop runs.
class FakePortal : public QDBusVirtualObject
{
public:
    /// Makes the answer to a question; a default-constructed message is no answer at all.
    using Answer = std::function<QDBusMessage(const QDBusMessage &question)>;

    explicit FakePortal(const QString &busAddress)
        : m_connection(QDBusConnection::connectToBus(busAddress, QStringLiteral("portal")))
    {
        m_connection.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this);
        m_connection.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    ~FakePortal() override { leave(); }

    /// Off the bus; for good.
    void leave() { QDBusConnection::disconnectFromBus(QStringLiteral("portal")); }

    static Answer saying(const QVariant &value)
    {
        return [value](const QDBusMessage &question) {
            const QDBusVariant inner(value);
            return question.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner))));
        };
    }

    static Answer silence()
    {
        return [](const QDBusMessage &question) {
            question.setDelayedReply(true);
            return QDBusMessage();
        };
    }

    QString introspect(const QString &) const override { return QString(); }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        question = message;
        ++asked;
        if (const QDBusMessage reply = answer(message); reply.type() != QDBusMessage::InvalidMessage) {
            connection.send(reply);
        }
        return true;
    }

    Answer answer = saying(true);
    QDBusMessage question; ///< the last
    int asked = 0;

private:
    QDBusConnection m_connection;
};
