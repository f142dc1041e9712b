#include "ObjectHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using vbs::Value;

namespace {

constexpr int kForReading = 1;
constexpr int kForWriting = 2;

Value openFile(ObjectHost &host, const QString &path, int mode)
{
    return host.use(
        host.createObject(u"Scripting.FileSystemObject"_s), "OpenTextFile", { text(path), number(mode) });
}

Value execute(ObjectHost &host, const QString &command)
{
    return host.use(host.createObject(u"WScript.Shell"_s), "Exec", { text(command) });
}

struct Wait
{
    const char *name;
    std::function<void(ObjectHost &)> run;
};

}

// Whatever a script waits for: it ends within a tenth of a second of its limit.
TEST(Limits, EveryWaitEndsWithTheTimeLimit)
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const int writer = ::open(QFile::encodeName(pipe).constData(), O_RDWR | O_CLOEXEC); // never says anything
    const Wait waits[] = {
        { "Run",
            [](ObjectHost &host) {
                host.use(host.createObject(u"WScript.Shell"_s), "Run",
                    { text(u"sleep 3"_s), number(0), Value::boolean(true) });
            } },
        { "StdOut.ReadLine",
            [](ObjectHost &host) { host.use(host.use(execute(host, u"sleep 3"_s), "StdOut"), "ReadLine"); } },
        { "StdIn.Write",
            [](ObjectHost &host) {
                host.use(host.use(execute(host, u"sleep 3"_s), "StdIn"), "Write",
                    { text(QString(1 << 20, u'x')) });
            } },
        { "Terminate",
            [](ObjectHost &host) {
                const Value command
                    = execute(host, u"sh -c \"trap '' TERM; echo ready; sleep 1; sleep 1\""_s);
                host.use(host.use(command, "StdOut"), "ReadLine");
                host.use(command, "Terminate");
            } },
        { "pipe read", [&](ObjectHost &host) { host.use(openFile(host, pipe, kForReading), "ReadAll"); } },
        { "pipe write",
            [&](ObjectHost &host) {
                host.use(openFile(host, pipe, kForWriting), "Write", { text(QString(1 << 20, u'x')) });
            } },
        { "endless device",
            [](ObjectHost &host) {
                const Value device = openFile(host, u"/dev/zero"_s, kForReading);
                while (true)
                    host.use(device, "Skip", { number(100000) });
            } },
        { "tree walk",
            [](ObjectHost &host) {
                const Value files = host.createObject(u"Scripting.FileSystemObject"_s);
                while (true)
                    host.use(host.use(files, "GetFolder", { text(u"/usr/share"_s) }), "Size");
            } },
    };
    for (const Wait &wait : waits) {
        const qint64 late = lateness(250, wait.run);
        EXPECT_GE(late, 0) << wait.name;
        EXPECT_LT(late, 100) << wait.name;
    }
    ::close(writer);
}

// What objects hold is part of the script's memory, is refused beyond the limit, and is given back.
TEST(Limits, MemoryOfObjectsIsCountedAndGivenBack)
{
    const Wait hogs[] = {
        { "ReadAll",
            [](ObjectHost &host) { host.use(openFile(host, u"/dev/zero"_s, kForReading), "ReadAll"); } },
        { "ReadLine",
            [](ObjectHost &host) { host.use(openFile(host, u"/dev/zero"_s, kForReading), "ReadLine"); } },
        { "StdOut.ReadAll",
            [](ObjectHost &host) {
                host.use(host.use(execute(host, u"cat /dev/zero"_s), "StdOut"), "ReadAll");
            } },
        { "StdErr while reading StdOut",
            [](ObjectHost &host) {
                host.use(host.use(execute(host, u"sh -c \"cat /dev/zero >&2\""_s), "StdOut"), "ReadLine");
            } },
        { "LoadFromFile",
            [](ObjectHost &host) {
                const Value stream = host.createObject(u"ADODB.Stream"_s);
                host.use(stream, "Open");
                host.use(stream, "LoadFromFile", { text(u"/dev/zero"_s) });
            } },
        { "Position",
            [](ObjectHost &host) {
                const Value stream = host.createObject(u"ADODB.Stream"_s);
                host.use(stream, "Open");
                host.put(stream, "Position", Value::longInteger(2000000000));
            } },
        { "WriteText",
            [](ObjectHost &host) {
                const Value stream = host.createObject(u"ADODB.Stream"_s);
                host.use(stream, "Open");
                while (true)
                    host.use(stream, "WriteText", { text(QString(100000, u'x')) });
            } },
        { "Dictionary",
            [](ObjectHost &host) {
                const Value dictionary = host.createObject(u"Scripting.Dictionary"_s);
                for (int i = 0;; ++i)
                    host.use(dictionary, "Add", { number(i), Value() });
            } },
    };
    const qint64 before = vbs::memory::used();
    vbs::memory::setLimit(32 * 1024 * 1024);
    for (const Wait &hog : hogs) {
        ObjectHost host;
        host.setTimeLimit(10000);
        EXPECT_EQ(errorOf([&] { hog.run(host); }), vbs::err::kOutOfMemory) << hog.name;
        EXPECT_EQ(vbs::memory::used(), before) << hog.name;
    }
    vbs::memory::setLimit(vbs::memory::kDefaultLimit);
}

// A command that ends early, and one that nobody waits for, leave the program alone.
TEST(Limits, CommandsThatEndWithoutUsHarmNobody)
{
    ObjectHost host;
    host.setTimeLimit(5000);
    const Value command = execute(host, u"true"_s);
    while (host.text(command, "Status") == u"0"_s) { }
    EXPECT_EQ(errorOf([&] {
        host.use(host.use(command, "StdIn"), "Write", { text(QString(1 << 20, u'x')) });
    }), vbs::err::kDeviceIo);
    for (int i = 0; i < 3; ++i)
        execute(host, u"sh -c \"exit 1\""_s);
    EXPECT_EQ(
        host.text(host.use(execute(host, u"echo still here"_s), "StdOut"), "ReadLine"), u"still here"_s);
}
