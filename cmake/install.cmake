# Install rules.
