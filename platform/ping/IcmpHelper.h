#pragma once

#include <QObject>
#include <QProcess>
#include <QTimer>
#include <functional>
#include <vector>

/** Runs the helper program kavro-icmp and takes the sockets that it hands over (SCM_RIGHTS, on descriptor
    3). */
class IcmpHelper : public QObject
{
public:
    /** done is called once, from the event loop, with the sockets that came (possibly none); the receiver
        owns them. Not called after destruction. */
    IcmpHelper(const QString &program, std::function<void(std::vector<int>)> done);
    ~IcmpHelper() override;

private:
    void finish();
    std::vector<int> takeSockets();

    std::function<void(std::vector<int>)> m_done;
    QProcess m_process;
    QTimer m_limit;
    int m_ours = -1;
};
