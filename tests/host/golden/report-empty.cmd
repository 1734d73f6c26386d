report --state {installations}/../no-runs
