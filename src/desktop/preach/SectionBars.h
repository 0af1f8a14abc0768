#pragma once

#include "preach/PreachTimeEstimate.h"

#include <QWidget>

namespace quillon::desktop {

/// One bar per spoken section, as long as the section takes to preach, coloured by how it is
/// delivered, so the heavy parts of a sermon show at a glance.
class SectionBars : public QWidget {
    Q_OBJECT
public:
    explicit SectionBars(QWidget* parent = nullptr);

    void setEstimate(const preach::PreachTimeEstimate& estimate, const preach::PreachPace& pace);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Minutes one section takes at `pace`.
    static double sectionMinutes(const preach::PreachTimeEstimate::Section& section, const preach::PreachPace& pace);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Row {
        QString title;
        QString figure;
        double minutes = 0;
        preach::Delivery delivery = preach::Delivery::prose;
    };
    std::vector<Row> m_rows;
    double m_longest = 0;
};

} // namespace quillon::desktop
