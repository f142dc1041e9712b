#include "platform/ping/IcmpHelper.h"

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int kHandover = 3; // descriptor on which the helper expects its socket
constexpr int kLimitMs = 3000;
constexpr std::size_t kMostSockets = 2;

void prepareChild(int theirs)
{
    // dup2 onto itself would keep close-on-exec.
    if (theirs == kHandover)
        fcntl(theirs, F_SETFD, 0);
    else
        dup2(theirs, kHandover);
}

} // namespace

IcmpHelper::IcmpHelper(const QString &program, std::function<void(std::vector<int>)> done)
    : m_done(std::move(done))
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &IcmpHelper::finish);
    int pair[2];
    if (socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair) != 0) {
        m_limit.start(0);
        return;
    }
    m_ours = pair[0];
    m_process.setChildProcessModifier([theirs = pair[1]] { prepareChild(theirs); });
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    // Both end in a timer, because QProcess may report a failed start before start() returns.
    connect(&m_process, &QProcess::finished, this, [this] { m_limit.start(0); });
    connect(&m_process, &QProcess::errorOccurred, this, [this] { m_limit.start(0); });
    m_limit.start(kLimitMs);
    m_process.start(program, QStringList());
    ::close(pair[1]);
}

IcmpHelper::~IcmpHelper()
{
    m_process.disconnect();
    m_process.kill();
    m_process.waitForFinished(100); // a killed child is gone at once; QProcess complains otherwise
    if (m_ours >= 0)
        ::close(m_ours);
}

void IcmpHelper::finish()
{
    const auto done = std::exchange(m_done, nullptr);
    if (done)
        done(takeSockets());
}

std::vector<int> IcmpHelper::takeSockets()
{
    char note = 0;
    iovec part { &note, 1 };
    alignas(cmsghdr) char control[CMSG_SPACE(kMostSockets * sizeof(int))];
    msghdr message {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    if (m_ours < 0 || recvmsg(m_ours, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC) < 1)
        return {};
    std::vector<int> sockets;
    for (cmsghdr *c = CMSG_FIRSTHDR(&message); c; c = CMSG_NXTHDR(&message, c)) {
        if (c->cmsg_level != SOL_SOCKET || c->cmsg_type != SCM_RIGHTS)
            continue;
        sockets.resize((c->cmsg_len - CMSG_LEN(0)) / sizeof(int));
        std::memcpy(sockets.data(), CMSG_DATA(c), sockets.size() * sizeof(int));
    }
    return sockets;
}
