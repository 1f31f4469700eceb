#!/usr/bin/python3
"""Expected Vsepr fingerprints, and Tanimoto coefficients of RDKit's bit
fingerprints, for the fingerprint tests (tests/mol/vsepr_fingerprint_test.cc).

Run with /usr/bin/python3 (Debian's python3-rdkit, the same RDKit release the
library links); writes vsepr_refs.tsv beside this script.

The Vsepr fingerprint is written again here from its description in
include/varimo/platform/printex/vsepr_fingerprint.h and the type codes of
src/platform/printex/vsepr_paths.cc, with nothing of the library run:
  - paths come from Chem.FindAllPathsOfLengthN(mol, n, useBonds=True,
    useHs=False). The library asks RDKit's C++ findAllPathsOfLengthsMtoN
    for all lengths at once, which Python does not offer. That call walks
    atoms and lets a walk come back onto itself (close a ring) only at its
    longest length, so for every shorter length the walks that meet an atom
    twice are dropped here; for the longest length, and for the single
    lengths of ForcePathsOut, FindAllPathsOfLengthN is that same call;
  - an atom's type: atomic number (bits 0-7), aromatic (bit 8), heavy
    neighbours up to 7 (bits 9-11), GetTotalNumHs(includeNeighbors=True) up
    to 3 (bits 12-13), formal charge clamped to -3..3 plus 3 (bits 14-16),
    in a ring (bit 17), with stereo the _CIPCode R=1, S=2 (bits 18-19);
    a bond's type: single 1, double 2, triple 3, aromatic 4, other 5, with
    stereo STEREOE adds 1<<4 and STEREOZ 2<<4;
  - a path is spelt atom, bond, atom, ... along its walk, and of the
    spelling and its reverse the lexicographically smaller is hashed: the
    splitmix64 finaliser of the length, then h = mix(h ^ code) per code;
    the top 12 bits of the 64 are the bin;
  - a path that closes a ring is one feature whatever the atom order:
    RDKit walks it from wherever its search met the ring first, so every
    walk over the same bonds is spelt (a cycle from each of its atoms, a
    ring on a tail either way round) and the smallest spelling, read from
    either end, is taken;
  - environments: for each radius r from max(1, ceil(min / 2)) to
    floor(max / 2) (the lengths cut to 10 first), each heavy atom's
    identifier at r is, from id_0 = its atom type: h = mix(mix(SEED + r)
    ^ id_{r-1}), then for each heavy neighbour's (bond type, id_{r-1})
    pair in ascending order h = mix(mix(h ^ bond type) ^ id_{r-1}); the
    top 12 bits are the bin. Its atoms are those within r bonds over
    heavy atoms, its bonds the heavy-heavy bonds with an end within r - 1;
  - a path weighs 1, or its number of bonds (at least 1) with
    WeightByLength, an environment 1 or 2r; a bin weighs the largest
    weight hashed into it;
  - ForcePathsOut: heavy atoms on no path get, length by length downward
    from min(MinPathLength, MaxPathLength + 1) - 1, the paths of that length
    through any of them, down to the atom alone;
  - an atom's fingerprint holds the features containing it, a bond's the
    features containing it;
  - Tanimoto numerator sum(min), denominator sum(max), as integers.
Morgan (radius 2, 2048 bits, AllChem.GetMorganFingerprintAsBitVect) and
topological (Chem.RDKFingerprint minPath 1, maxPath 7, fpSize 2048, the
other arguments at their defaults, as the library's RDKFingerprintMol call)
coefficients come from DataStructs.TanimotoSimilarity.

Molecules: SMILES through Chem.MolFromSmiles, bzr records through
Chem.SDMolSupplier (both sanitised, hydrogens removed, as the library's
readers).

vsepr_refs.tsv holds tab-separated lines:
  options <name> <min> <max> <force 0/1> <by length 0/1> <stereo 0/1>
  mol <key> smiles <SMILES> | mol <key> bzr <record from 0>
  fp <key> <options> <volume> <bin:weight,...>
  atom <key> <options> <atom index> <volume> <bin:weight,...>
  bond <key> <options> <bond index> <volume> <bin:weight,...>
  tanimoto <key a> <key b> <options> <sum of minima> <sum of maxima>
  bits <key a> <key b> <morgan|topological> <coefficient, repr>
"""
import os

from rdkit import Chem, DataStructs, RDLogger
from rdkit.Chem import AllChem

HERE = os.path.dirname(os.path.abspath(__file__))
BZR = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf"
MASK = (1 << 64) - 1
BINS = 4096
BIN_SHIFT = 64 - 12
ENVIRONMENT_SEED = 0x5EED000000000000
MAX_LENGTH = 10

# name: (min, max, force paths out, weight by length, stereo aware)
OPTIONS = {
    "default": (1, 6, True, False, False),
    "min0": (0, 6, True, False, False),
    "min3max2": (3, 2, True, False, False),
    "noforce": (1, 6, False, False, False),
    "bylength": (1, 6, True, True, False),
    "stereo": (1, 6, True, False, True),
    "long": (2, 12, True, False, False),  # 12 is cut to 10
}

SMILES = {
    "salt": "[Na+].[Cl-]",
    "methane": "C",
    "ethanol": "CCO",
    "glycerol": "OCC(O)CO",
    "cyclopropane": "C1CC1",
    "cresamide": "Cc1cc(O)ccc1C(=O)N",
    "naphthol": "Oc1ccc2ccccc2c1",
    "betaine": "C[N+](C)(C)CC(=O)[O-]",
    "nitrile": "CC#N",
    "r_amino": "C[C@H](N)O",
    "s_amino": "C[C@@H](N)O",
    "e_dfe": "F/C=C/F",
    "z_dfe": "F/C=C\\F",
    "chain": "C" * 300,  # 297 equal CH2-CH2 bonds: one bin for them all
    "isopropanol": "CC(C)O",
    "propanol": "CCCO",
}
BZR_RECORDS = {"adinazolam": 0, "lorazepam": 16, "ro11_6679": 69, "ro16_7083": 121}

TANIMOTO_PAIRS = [
    ("ethanol", "glycerol"),
    ("r_amino", "s_amino"),
    ("e_dfe", "z_dfe"),
    ("cresamide", "naphthol"),
    ("adinazolam", "lorazepam"),
    ("lorazepam", "ro11_6679"),
    ("ro11_6679", "ro16_7083"),
    ("salt", "methane"),
    ("chain", "ethanol"),
    ("isopropanol", "propanol"),
]
BIT_PAIRS = [("ethanol", "glycerol"), ("cresamide", "naphthol"), ("adinazolam", "lorazepam"),
             ("lorazepam", "ro16_7083"), ("r_amino", "s_amino")]


def mix(h):
    h = ((h ^ (h >> 30)) * 0xBF58476D1CE4E5B9) & MASK
    h = ((h ^ (h >> 27)) * 0x94D049BB133111EB) & MASK
    return h ^ (h >> 31)


def atom_code(mol, atom, stereo):
    heavy = sum(1 for n in atom.GetNeighbors() if n.GetAtomicNum() != 1)
    code = atom.GetAtomicNum() & 0xFF
    code |= int(atom.GetIsAromatic()) << 8
    code |= min(heavy, 7) << 9
    code |= min(atom.GetTotalNumHs(includeNeighbors=True), 3) << 12
    code |= (max(-3, min(3, atom.GetFormalCharge())) + 3) << 14
    code |= int(mol.GetRingInfo().NumAtomRings(atom.GetIdx()) > 0) << 17
    if stereo and atom.HasProp("_CIPCode"):
        code |= {"R": 1, "S": 2}.get(atom.GetProp("_CIPCode"), 0) << 18
    return code


def bond_code(bond, stereo):
    order = {Chem.BondType.SINGLE: 1, Chem.BondType.DOUBLE: 2, Chem.BondType.TRIPLE: 3,
             Chem.BondType.AROMATIC: 4}.get(bond.GetBondType(), 5)
    if stereo:
        order |= {Chem.BondStereo.STEREOE: 1 << 4, Chem.BondStereo.STEREOZ: 2 << 4}.get(bond.GetStereo(), 0)
    return order


def walk(mol, bonds):
    """The atoms along a path of bonds: it starts at the atom of the first
    bond that the second does not hold."""
    first = mol.GetBondWithIdx(bonds[0])
    ends = {first.GetBeginAtomIdx(), first.GetEndAtomIdx()}
    if len(bonds) == 1:
        return [first.GetBeginAtomIdx(), first.GetEndAtomIdx()]
    second = mol.GetBondWithIdx(bonds[1])
    (start,) = ends - {second.GetBeginAtomIdx(), second.GetEndAtomIdx()}
    atoms = [start]
    for b in bonds:
        bond = mol.GetBondWithIdx(b)
        here = atoms[-1]
        assert here in (bond.GetBeginAtomIdx(), bond.GetEndAtomIdx()), "bonds out of walk order"
        atoms.append(bond.GetOtherAtomIdx(here))
    return atoms


def walks(atoms, bonds):
    """Every walk over the bonds of a path: the path itself, or for one that
    closes a ring each walk RDKit might have found first."""
    if len(set(atoms)) == len(atoms):
        return [(atoms, bonds)]
    j = atoms.index(atoms[-1])  # the tail is atoms[:j + 1], the ring the rest
    if j == 0:
        n = len(bonds)
        rotations = [(atoms[s:-1] + atoms[:s + 1], bonds[s:] + bonds[:s]) for s in range(n)]
        return rotations + [(a[::-1], b[::-1]) for a, b in rotations]
    return [(atoms, bonds), (atoms[:j + 1] + atoms[j + 1:-1][::-1] + [atoms[j]], bonds[:j] + bonds[j:][::-1])]


def spell(atom_codes, bond_codes, atoms, bonds):
    spelling = []
    for i, a in enumerate(atoms):
        spelling.append(atom_codes[a])
        if i < len(bonds):
            spelling.append(bond_codes[bonds[i]])
    return min(spelling, spelling[::-1])


def paths_of_length(mol, n, longest):
    """(atoms, bonds) of the paths of n bonds, as RDKit's findAllPathsOfLengthsMtoN
    returns them for lengths up to `longest`."""
    if n == 0:
        return [([a.GetIdx()], []) for a in mol.GetAtoms() if a.GetAtomicNum() != 1]
    found = []
    for bonds in Chem.FindAllPathsOfLengthN(mol, n, useBonds=True, useHs=False):
        atoms = walk(mol, list(bonds))
        if n < longest and len(set(atoms)) < len(atoms):
            continue  # rings close only at the longest length
        found.append((atoms, list(bonds)))
    return found


def find_paths(mol, options):
    lo, hi, force, by_length, stereo = options
    lo, hi = min(lo, MAX_LENGTH), min(hi, MAX_LENGTH)
    atom_codes = [atom_code(mol, a, stereo) for a in mol.GetAtoms()]
    bond_codes = [bond_code(b, stereo) for b in mol.GetBonds()]
    paths = []
    if lo <= hi:
        for n in range(lo, hi + 1):
            paths += paths_of_length(mol, n, hi)
    if force:
        covered = {a.GetIdx() for a in mol.GetAtoms() if a.GetAtomicNum() == 1}
        for atoms, _ in paths:
            covered.update(atoms)
        for n in range(min(lo, hi + 1) - 1, -1, -1):
            missed = {a.GetIdx() for a in mol.GetAtoms()} - covered
            if not missed:
                break
            new = [p for p in paths_of_length(mol, n, n) if missed & set(p[0])]
            for atoms, _ in new:
                covered.update(atoms)
            paths += new
    result = []
    for atoms, bonds in paths:
        spelling = min(spell(atom_codes, bond_codes, a, b) for a, b in walks(atoms, bonds))
        h = mix(len(spelling))
        for code in spelling:
            h = mix(h ^ code)
        weight = max(1, len(bonds)) if by_length else 1
        result.append((h >> BIN_SHIFT, weight, set(atoms), set(bonds)))
    return result + environments(mol, max(1, (lo + 1) // 2), hi // 2, by_length, atom_codes, bond_codes)


def environments(mol, lower, upper, by_length, atom_codes, bond_codes):
    """(bin, weight, atoms, bonds) of the environments of radius lower..upper."""
    heavy = [a.GetIdx() for a in mol.GetAtoms() if a.GetAtomicNum() != 1]
    ids = {a: atom_codes[a] for a in heavy}
    found = []
    for r in range(1, upper + 1):
        grown = {}
        for a in heavy:
            pairs = sorted((bond_codes[b.GetIdx()], ids[b.GetOtherAtomIdx(a)])
                           for b in mol.GetAtomWithIdx(a).GetBonds() if b.GetOtherAtomIdx(a) in ids)
            h = mix((mix(ENVIRONMENT_SEED + r) ^ ids[a]) & MASK)
            for bond, neighbour in pairs:
                h = mix(mix(h ^ bond) ^ neighbour)
            grown[a] = h
        ids = grown
        if r < lower:
            continue
        for a in heavy:
            # Breadth-first over heavy atoms: the atoms within r bonds, and
            # the bonds leaving the atoms within r - 1.
            atoms, bonds, frontier = {a}, set(), {a}
            for _ in range(r):
                step = set()
                for x in frontier:
                    for b in mol.GetAtomWithIdx(x).GetBonds():
                        y = b.GetOtherAtomIdx(x)
                        if y in ids:
                            bonds.add(b.GetIdx())
                            step.add(y)
                frontier = step - atoms
                atoms |= step
            found.append((ids[a] >> BIN_SHIFT, 2 * r if by_length else 1, atoms, bonds))
    return found


def counts(paths, select=lambda p: True):
    c = [0] * BINS
    for p in paths:
        if select(p):
            c[p[0]] = max(c[p[0]], p[1])
    return c


def sparse(c):
    return ",".join(f"{b}:{w}" for b, w in enumerate(c) if w)


def main():
    RDLogger.DisableLog("rdApp.*")
    mols = {}
    lines = ["# generated by make_vsepr_refs.py from RDKit's Python paths; do not edit"]
    for name, o in OPTIONS.items():
        lines.append("\t".join(["options", name] + [str(int(v)) for v in o]))
    for key, smiles in SMILES.items():
        mols[key] = Chem.MolFromSmiles(smiles)
        lines.append(f"mol\t{key}\tsmiles\t{smiles}")
    bzr = list(Chem.SDMolSupplier(BZR))
    for key, record in BZR_RECORDS.items():
        mols[key] = bzr[record]
        lines.append(f"mol\t{key}\tbzr\t{record}")

    fps = {}
    for oname, o in OPTIONS.items():
        for key, mol in mols.items():
            paths = find_paths(mol, o)
            c = counts(paths)
            fps[key, oname] = c
            lines.append(f"fp\t{key}\t{oname}\t{sum(c)}\t{sparse(c)}")
            atom = min(2, mol.GetNumAtoms() - 1)
            a = counts(paths, lambda p: atom in p[2])
            lines.append(f"atom\t{key}\t{oname}\t{atom}\t{sum(a)}\t{sparse(a)}")
            if mol.GetNumBonds():
                bond = mol.GetNumBonds() // 2
                b = counts(paths, lambda p: bond in p[3])
                lines.append(f"bond\t{key}\t{oname}\t{bond}\t{sum(b)}\t{sparse(b)}")
        for ka, kb in TANIMOTO_PAIRS:
            a, b = fps[ka, oname], fps[kb, oname]
            lo = sum(min(x, y) for x, y in zip(a, b))
            hi = sum(max(x, y) for x, y in zip(a, b))
            lines.append(f"tanimoto\t{ka}\t{kb}\t{oname}\t{lo}\t{hi}")

    for ka, kb in BIT_PAIRS:
        a, b = mols[ka], mols[kb]
        morgan = DataStructs.TanimotoSimilarity(AllChem.GetMorganFingerprintAsBitVect(a, 2, nBits=2048),
                                                AllChem.GetMorganFingerprintAsBitVect(b, 2, nBits=2048))
        topo = DataStructs.TanimotoSimilarity(Chem.RDKFingerprint(a, minPath=1, maxPath=7, fpSize=2048),
                                              Chem.RDKFingerprint(b, minPath=1, maxPath=7, fpSize=2048))
        lines.append(f"bits\t{ka}\t{kb}\tmorgan\t{morgan!r}")
        lines.append(f"bits\t{ka}\t{kb}\ttopological\t{topo!r}")

    with open(os.path.join(HERE, "vsepr_refs.tsv"), "w") as out:
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
