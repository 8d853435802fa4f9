/// A worker that cannot start.
throw new Error('a worker that is no worker of the package');
