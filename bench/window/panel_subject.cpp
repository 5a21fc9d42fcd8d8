// The picker's window without the rest of the program: hears keys in a window of its own. Says "ready" on
// descriptor 3.

#include "desk.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

using namespace glyma::gallery;

class Typing : public QWidget {
public:
    explicit Typing(Desk& desk)
        : desk_(desk) {
        resize(400, 300);
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const auto text = event->text().toStdString();
        if (event->key() == Qt::Key_Escape) {
            desk_.panel.hide();
            query_.clear();
        } else if (!text.empty() && text != ":") {
            query_ += text;
            if (desk_.panel.isVisible())
                desk_.model.setQuery(query_);
            else
                desk_.open(query_, {200, 200, 2, 20});
        }
    }

private:
    Desk& desk_;
    std::string query_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const auto desk = Desk::make();
    if (!desk) {
        std::fprintf(stderr, "%s\n", desk.error().c_str());
        return 1;
    }
    Typing typing(**desk);
    typing.show();
    typing.activateWindow();
    (*desk)->panel.warmUp();
    wait(1000);
    [[maybe_unused]] const auto written = write(3, "ready\n", 6);
    return QApplication::exec();
}
