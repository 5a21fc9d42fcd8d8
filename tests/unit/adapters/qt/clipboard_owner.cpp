// Owns the clipboard, or with the argument "primary" the last selection, with contents of several types, one
// of them too large for one property of the X server, until it is killed.

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <cstdio>

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QByteArray image(20'000'000, '\0');
    for (qsizetype index = 0; index < image.size(); ++index)
        image[index] = static_cast<char>(index * 31 ^ index >> 11);
    auto* data = new QMimeData;
    data->setText(QStringLiteral("plain 😀 text"));
    data->setHtml(QStringLiteral("<b>rich</b>"));
    data->setData(QStringLiteral("text/uri-list"), "file:///tmp/a%20b\r\nfile:///tmp/%C3%A9\r\n");
    data->setData(QStringLiteral("application/x-test"), QByteArray("a\0b\xFF", 4));
    data->setData(QStringLiteral("image/x-raw"), image);
    const bool isPrimary = argc > 1;
    QGuiApplication::clipboard()->setMimeData(data,
                                              isPrimary ? QClipboard::Selection : QClipboard::Clipboard);
    std::puts("ready");
    std::fflush(stdout);
    return QGuiApplication::exec();
}
