#pragma once
// The first window of the program: a picture with the version, shown for two seconds. Its
// timer's handler makes the main window and runs the rest of the start-up.
#include <QWidget>
#include <memory>

class QLabel;
class QTimer;
class vorn;

class stadiumsplash : public QWidget {
    Q_OBJECT
public:
    // `namedFile`: a stadium named on the command line, opened once the main window stands.
    explicit stadiumsplash(const QString& namedFile = QString(), QWidget* parent = nullptr);
    ~stadiumsplash() override;

    QTimer* Timer1() const { return timer1_; }
    // The main window, once the timer has fired; the splash keeps it alive until the program ends.
    vorn* mainWindow() const { return main_.get(); }

public slots:
    void Timer1Timer();

private:
    QTimer* timer1_;
    QLabel* label1_;
    QLabel* label2_;
    QLabel* label3_;
    std::unique_ptr<vorn> main_;
    QString namedFile_;
};
