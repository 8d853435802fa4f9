/// The package's worker with a laboratory in it.
import './instruments.js';
import '/exports/worker.js';
