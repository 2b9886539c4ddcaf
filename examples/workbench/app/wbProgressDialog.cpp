#include "app/wbProgressDialog.h"

wbProgressDialog::wbProgressDialog(QWidget* parent)
    : m_dialog(new QProgressDialog(parent))
{
    m_dialog->setObjectName("progressDialog");
    m_dialog->setWindowTitle(QProgressDialog::tr("Working"));
    m_dialog->setMinimumDuration(500);
    m_dialog->setAutoReset(false);
    m_dialog->setAutoClose(false);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->reset();
    m_dialog->hide();
}

wbProgressDialog::~wbProgressDialog()
{
    delete m_dialog;
}

void wbProgressDialog::setRange(int min, int max)
{
    if (m_dialog)
        m_dialog->setRange(min, std::max(min, max));
}

void wbProgressDialog::setInfoText(QString const& text)
{
    if (m_dialog)
        m_dialog->setLabelText(text);
}

void wbProgressDialog::begin()
{
    // Nested work shares the outer dialog.
    if (m_depth++ > 0 || !m_dialog)
        return;
    m_dialog->reset();
    m_dialog->setValue(m_dialog->minimum());
}

void wbProgressDialog::setValue(int value)
{
    if (m_dialog && m_depth > 0)
        m_dialog->setValue(value);
}

void wbProgressDialog::end()
{
    if (m_depth == 0 || --m_depth > 0 || !m_dialog)
        return;
    m_dialog->reset();
    m_dialog->hide();
}

bool wbProgressDialog::canceled()
{
    return m_dialog && m_dialog->wasCanceled();
}
