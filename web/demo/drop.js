/// Files that are dropped on the page.

/** @param {(files: File[]) => void} onFiles */
export function takeDrops(onFiles) {
  const root = document.documentElement;
  const hasFiles = (/** @type {DragEvent} */ event) => event.dataTransfer?.types.includes('Files') ?? false;
  document.addEventListener('dragover', (event) => {
    if (!hasFiles(event)) return;
    event.preventDefault();
    root.toggleAttribute('data-dropping', true);
  });
  document.addEventListener('dragleave', (event) => {
    if (!event.relatedTarget) root.removeAttribute('data-dropping');
  });
  document.addEventListener('drop', (event) => {
    root.removeAttribute('data-dropping');
    if (!hasFiles(event)) return;
    event.preventDefault();
    onFiles([...(event.dataTransfer?.files ?? [])]);
  });
}
