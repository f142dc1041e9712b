#pragma once

#include "editors/EditorForm.h"

#include <array>

class EditedTree;

/** One check's counters, times, state and history; writes nothing. */
class frmPortDetails : public EditorForm
{
    Q_OBJECT
public:
    /** key is that of the check's node. */
    frmPortDetails(EditedTree &tree, const QString &key);

private:
    enum Box {
        Device,
        Port,
        Description,
        Failure,
        FailurePercent,
        Success,
        SuccessPercent,
        Total,
        Status,
        PingMin,
        PingMax,
        PingAvg,
        BoxCount
    };

    QWidget *boxes();
    void Form_Load();
    void GetPortEvents();
    void addEvent(const QStringList &cells, int icon);
    void setBox(Box box, const QString &text);

    QString m_deviceId;
    QString m_port;
    std::array<QLineEdit *, BoxCount> m_boxes {};
    QTreeWidget *m_history = nullptr;
};
