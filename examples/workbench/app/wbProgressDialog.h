#pragma once

#include <iModelStage/reporting/iProgressInterface.h>

#include <QPointer>
#include <QProgressDialog>

// Shows the library's progress (long loads, saves, merges) in a dialog that
// appears only when the work lasts, and passes the user's cancel back.
class wbProgressDialog : public iProgressInterface {
public:
    explicit wbProgressDialog(QWidget* parent);
    ~wbProgressDialog() override;

    void setRange(int min, int max) override;
    void setInfoText(QString const& text) override;
    void begin() override;
    void setValue(int value) override;
    void end() override;
    bool canceled() override;
    bool progressing() override { return m_depth > 0; }

    QProgressDialog* dialog() const { return m_dialog; }

private:
    QPointer<QProgressDialog> m_dialog;
    int m_depth = 0;
};
