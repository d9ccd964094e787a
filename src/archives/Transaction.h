#pragma once

#include "archives/Database.h"

/// Makes the changes between begin() and commit() one: without the commit they are taken back.
class Transaction
{
public:
    /// @param database  must outlive this object
    explicit Transaction(Database &database) : m_database(database) {}
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// @param toWrite  takes the right to write at once, rather than with the first change
    Result<void> begin(bool toWrite = false);
    /// On a fault the changes are taken back.
    Result<void> commit();
    void takeBack();

private:
    Database &m_database;
    bool m_open = false;
};
