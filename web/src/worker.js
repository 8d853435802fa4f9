/// The worker of this package, an entry of its own.
import { WorkerSession } from './worker_session.js';

new WorkerSession(/** @type {import('./worker_session.js').Scope} */ (/** @type {unknown} */ (globalThis)));
