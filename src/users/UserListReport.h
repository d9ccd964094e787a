#pragma once

#include "codes/User.h"
#include "reports/TableReport.h"

class Texts;

/// The printed register of users.
class UserListReport : public TableReport
{
public:
    UserListReport(const Texts &texts, const QList<User> &users);

private:
    void printHeadings(Page &page) override;
    void printRow(Page &page, const QString &text) override;
    void closePage(Page &page) override;

    void frame(Page &page, double top) const;
    void codeBand(Page &page, double top) const;
};
