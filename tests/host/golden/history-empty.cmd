history --state {installations}/../no-runs
